// How finely numbers were written, and numbers written no finer than that.
//
// A number that was written as 61.25 was somewhere between 61.245 and 61.255: half of its last place is the doubt that
// it has. What is worked out of it has a doubt too, and digits beyond it are noise.
#ifndef TRIGLUB_BASE_HALF_PLACE_H
#define TRIGLUB_BASE_HALF_PLACE_H

#include <cstdint>
#include <string_view>

namespace triglub {

// The last place of the numbers that one format of printf writes.
class LastPlace {
 public:
  // Nothing is known of it.
  LastPlace() = default;
  // Of "%9.4f", "%16.8g", "%e" and the like. Any other format says nothing.
  static LastPlace of_format(std::string_view format);

  bool is_known() const { return counted_ != Counted::nothing; }
  // Half of the last place of a number that was written so, or of its own shortest text when that is finer. 0 where
  // nothing is known: of any number when the place is not, and of a zero without a settled place.
  double half_at(double number) const;

 private:
  enum class Counted : std::uint8_t { nothing, decimals, digits };
  LastPlace(Counted counted, int count) : counted_(counted), count_(count) {}

  Counted counted_ = Counted::nothing;
  int count_ = 0;
};

// The number of the fewest significant digits, rounded as printf rounds, that is no further than `doubt` from `number`;
// 0 when 0 is no further. The number itself when there is no doubt (0), or when it is not finite.
double fewest_digits(double number, double doubt);

}  // namespace triglub

#endif
