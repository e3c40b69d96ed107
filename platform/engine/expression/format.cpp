// Formats are taken apart here; printf gets the conversions of numbers, put together anew.
#include "engine/expression/format.h"

#include <cstdio>
#include <utility>

#include "base/c_locale.h"
#include "base/characters.h"
#include "engine/expression/characters.h"

namespace triglub::expression {

namespace {

constexpr std::size_t kMost = 100;           // of width and precision
constexpr std::size_t kLongestNumber = 512;  // 309 digits before the point and 100 behind it, and some

// Numbers are written as in C, with a point, wherever the program that uses the library comes from.
class PlainLocale {
 public:
  PlainLocale() : before_(uselocale(c_locale())) {}
  ~PlainLocale() { uselocale(before_); }
  PlainLocale(const PlainLocale&) = delete;
  PlainLocale& operator=(const PlainLocale&) = delete;

 private:
  locale_t before_;
};

template <typename Argument>
std::string printed(const std::string& conversion, Argument argument) {
  char buffer[kLongestNumber];
  const PlainLocale locale;
  // The conversion was put together by the reader below, of nothing but what it knows.
  const int length = std::snprintf(buffer, sizeof buffer, conversion.c_str(), argument);
  return {buffer, static_cast<std::size_t>(length)};
}

// Flags that mean something to the conversion. The others are undefined in printf and refused here.
std::string_view flags_of(char conversion) {
  switch (conversion) {
    case 's':
      return "-";
    case 'x':
      return "-#0";
    case 'd':
    case 'i':
      return "-+ 0";
    default:
      return "-+ #0";
  }
}

std::string_view printf_type(char conversion) {
  switch (conversion) {
    case 'd':
    case 'i':
      return "lld";
    case 'x':
      return "llx";
    case 'e':
      return "e";
    case 'f':
      return "f";
    default:
      return "g";
  }
}

Kind kind_of(char conversion) {
  switch (conversion) {
    case 's':
      return Kind::text;
    case 'd':
    case 'i':
    case 'x':
      return Kind::integer;
    default:
      return Kind::real;
  }
}

}  // namespace

class Format::Reader {
 public:
  Reader(std::string_view text, FormatFault* fault) : text_(text), fault_(fault) {}

  std::optional<Format> read() {
    plain(&format_.before_);
    if (at_ == text_.size()) return refuse(0, "expected a conversion like %d, %.2f or %s");
    if (!conversion()) return std::nullopt;
    plain(&format_.after_);
    if (at_ != text_.size()) return refuse(at_, "expected one conversion only");
    return std::move(format_);
  }

 private:
  std::nullopt_t refuse(std::size_t offset, std::string expected) {
    *fault_ = {std::move(expected), offset};
    return std::nullopt;
  }

  // The text up to the next conversion.
  void plain(std::string* text) {
    for (; at_ < text_.size(); ++at_) {
      if (text_[at_] == '%') {
        if (at_ + 1 == text_.size() || text_[at_ + 1] != '%') return;
        ++at_;
      }
      *text += text_[at_];
    }
  }

  std::string_view flags() {
    const std::size_t begin = at_;
    while (at_ < text_.size() && std::string_view("-+ #0").find(text_[at_]) != std::string_view::npos) ++at_;
    return text_.substr(begin, at_ - begin);
  }

  // The number that stands here, 0 when there is none; nothing when it is too great.
  std::optional<std::size_t> number() {
    const std::size_t begin = at_;
    std::size_t number = 0;
    for (; at_ < text_.size() && is_digit(text_[at_]); ++at_) {
      number = number * 10 + static_cast<std::size_t>(text_[at_] - '0');
      if (number > kMost) return refuse(begin, "expected a width and precision of at most 100");
    }
    return number;
  }

  bool width_and_precision() {
    const std::optional<std::size_t> width = number();
    if (!width) return false;
    format_.width_ = *width;
    if (at_ == text_.size() || text_[at_] != '.') return true;
    ++at_;
    format_.precision_ = number();
    return format_.precision_.has_value();
  }

  bool conversion() {
    const std::size_t begin = at_++;
    const std::string_view flags = this->flags();
    if (!width_and_precision()) return false;
    if (at_ == text_.size() || std::string_view("difegxs").find(text_[at_]) == std::string_view::npos) {
      refuse(at_, "expected one of d i f e g x s %");
      return false;
    }
    const char type = text_[at_++];
    const std::size_t bad_flag = flags.find_first_not_of(flags_of(type));
    if (bad_flag != std::string_view::npos) {
      refuse(begin + 1 + bad_flag, std::string("expected no such flag for %") + type);
      return false;
    }
    format_.kind_ = kind_of(type);
    format_.is_left_ = flags.find('-') != std::string_view::npos;
    if (type != 's') assemble(flags, type);
    if (format_.kind_ == Kind::real && flags.empty() && format_.width_ == 0) format_.plain_real_ = chars_format(type);
    return true;
  }

  static std::chars_format chars_format(char type) {
    if (type == 'e') return std::chars_format::scientific;
    return type == 'f' ? std::chars_format::fixed : std::chars_format::general;
  }

  void assemble(std::string_view flags, char type) {
    std::string& conversion = format_.conversion_;
    conversion = "%";
    conversion += flags;
    if (format_.width_ > 0) conversion += std::to_string(format_.width_);
    if (format_.precision_) conversion += "." + std::to_string(*format_.precision_);
    conversion += printf_type(type);
  }

  std::string_view text_;
  FormatFault* fault_;
  std::size_t at_ = 0;
  Format format_;
};

std::optional<Format> Format::read(std::string_view text, FormatFault* fault) { return Reader(text, fault).read(); }

void Format::write(std::int64_t number, std::string* out) const {
  out->assign(before_).append(printed(conversion_, static_cast<long long>(number))).append(after_);
}

void Format::write(double number, std::string* out) const {
  out->assign(before_);
  if (plain_real_) {
    // Defined to give what printf gives in the C locale, and several times as fast.
    constexpr int kDefaultPrecision = 6;
    char buffer[kLongestNumber];
    const int precision = precision_ ? static_cast<int>(*precision_) : kDefaultPrecision;
    const char* end = std::to_chars(buffer, buffer + sizeof buffer, number, *plain_real_, precision).ptr;
    out->append(buffer, static_cast<std::size_t>(end - buffer));
  } else {
    out->append(printed(conversion_, number));
  }
  out->append(after_);
}

void Format::write(std::string_view text, std::string* out) const {
  if (precision_) text = text.substr(0, bytes_of_characters(text, *precision_));
  const std::size_t characters = count_characters(text);
  const std::size_t padding = width_ > characters ? width_ - characters : 0;
  out->assign(before_).append(is_left_ ? 0 : padding, ' ').append(text).append(is_left_ ? padding : 0, ' ');
  out->append(after_);
}

}  // namespace triglub::expression
