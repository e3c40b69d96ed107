// Arrays of mostly few elements.
#ifndef TRIGLUB_ENGINE_EXPRESSION_SMALL_ARRAY_H
#define TRIGLUB_ENGINE_EXPRESSION_SMALL_ARRAY_H

#include <array>
#include <cstddef>
#include <memory>

namespace triglub::expression {

// An array whose size is known when it is made, on the heap only when it is greater than kFew. No more elements are
// made than asked for.
template <typename T, std::size_t kFew>
class SmallArray {
 public:
  explicit SmallArray(std::size_t size) : size_(size) {
    if (size > kFew) data_ = std::allocator<T>().allocate(size);
    std::uninitialized_default_construct_n(data_, size);
  }
  ~SmallArray() {
    std::destroy_n(data_, size_);
    if (size_ > kFew) std::allocator<T>().deallocate(data_, size_);
  }
  SmallArray(const SmallArray&) = delete;
  SmallArray& operator=(const SmallArray&) = delete;

  T& operator[](std::size_t i) { return data_[i]; }
  T* data() { return data_; }

 private:
  std::size_t size_;
  alignas(T) std::array<std::byte, kFew * sizeof(T)> few_;
  T* data_ = reinterpret_cast<T*>(few_.data());
};

}  // namespace triglub::expression

#endif
