#ifndef TRIGLUB_DATABASE_EXPRESSION_SMALL_ARRAY_H
#define TRIGLUB_DATABASE_EXPRESSION_SMALL_ARRAY_H

#include <array>
#include <cstddef>
#include <memory>

namespace triglub::expression {

// An array whose size is known when it is made, on the heap only when it is greater than FEW.
template <typename T, std::size_t FEW>
class SmallArray {
 public:
  explicit SmallArray(std::size_t size) {
    if (size <= FEW) return;
    many_ = std::make_unique<T[]>(size);
    data_ = many_.get();
  }
  SmallArray(const SmallArray&) = delete;
  SmallArray& operator=(const SmallArray&) = delete;

  T& operator[](std::size_t i) { return data_[i]; }
  T* data() { return data_; }

 private:
  std::array<T, FEW> few_;
  std::unique_ptr<T[]> many_;
  T* data_ = few_.data();
};

}  // namespace triglub::expression

#endif
