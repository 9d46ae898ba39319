// Scratch memory whose allocation is checked and which is freed by its owner's destructor.
#ifndef VITRELL_BASE_BUFFER_H_
#define VITRELL_BASE_BUFFER_H_

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <type_traits>
#include <utility>

namespace vitrell {

// A fixed-size array of plain values. Never throws: Allocate returns false when memory is short and
// leaves the buffer empty. Allocating 0 values succeeds; data() is then null.
template <typename T>
class Buffer {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

 public:
  Buffer() = default;
  ~Buffer() { Free(); }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  Buffer(Buffer&& other) noexcept { Swap(other); }
  Buffer& operator=(Buffer&& other) noexcept {
    Swap(other);
    return *this;
  }

  // Discards the old values; the new ones are indeterminate.
  [[nodiscard]] bool Allocate(std::size_t count) { return Take(count, false); }

  // The same with every byte 0. Large blocks are zeroed by the system, page by page on first use.
  [[nodiscard]] bool AllocateZeroed(std::size_t count) { return Take(count, true); }

  void Free() {
    std::free(data_);
    data_ = nullptr;
    size_ = 0;
  }

  T* data() { return data_; }
  const T* data() const { return data_; }
  std::size_t size() const { return size_; }
  T* begin() { return data_; }
  T* end() { return data_ + size_; }
  const T* begin() const { return data_; }
  const T* end() const { return data_ + size_; }
  T& operator[](std::size_t index) { return data_[index]; }
  const T& operator[](std::size_t index) const { return data_[index]; }

 private:
  // NOLINTNEXTLINE(bugprone-sizeof-expression): T may be a pointer type.
  static constexpr std::size_t kValueBytes = sizeof(T);

  bool Take(std::size_t count, bool zeroed) {
    Free();
    if (count == 0) {
      return true;
    }
    // No object may be larger than PTRDIFF_MAX bytes; this also keeps the product from wrapping.
    if (count > static_cast<std::size_t>(PTRDIFF_MAX) / kValueBytes) {
      return false;
    }
    void* const block = zeroed ? std::calloc(count, kValueBytes) : std::malloc(count * kValueBytes);
    data_ = static_cast<T*>(block);
    size_ = data_ != nullptr ? count : 0;
    return data_ != nullptr;
  }

  void Swap(Buffer& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
  }

  T* data_ = nullptr;
  std::size_t size_ = 0;
};

// An array of plain values that grows as it is filled. Never throws: Append returns false when
// memory is short and keeps what is there. Growing moves the values.
template <typename T>
class GrowingBuffer {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

 public:
  GrowingBuffer() = default;
  ~GrowingBuffer() { std::free(data_); }
  GrowingBuffer(const GrowingBuffer&) = delete;
  GrowingBuffer& operator=(const GrowingBuffer&) = delete;

  [[nodiscard]] bool Append(const T& value) {
    if (size_ == capacity_ && !Grow()) {
      return false;
    }
    data_[size_++] = value;
    return true;
  }

  // Keeps the memory for reuse.
  void Clear() { size_ = 0; }

  T* data() { return data_; }
  const T* data() const { return data_; }
  std::size_t size() const { return size_; }
  T& operator[](std::size_t index) { return data_[index]; }
  const T& operator[](std::size_t index) const { return data_[index]; }

 private:
  // NOLINTNEXTLINE(bugprone-sizeof-expression): T may be a pointer type.
  static constexpr std::size_t kValueBytes = sizeof(T);

  bool Grow() {
    const std::size_t wanted = capacity_ == 0 ? 64 : capacity_ + capacity_ / 2;
    if (wanted > static_cast<std::size_t>(PTRDIFF_MAX) / kValueBytes) {
      return false;
    }
    void* const block = std::realloc(data_, wanted * kValueBytes);
    if (block == nullptr) {
      return false;
    }
    data_ = static_cast<T*>(block);
    capacity_ = wanted;
    return true;
  }

  T* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace vitrell

#endif  // VITRELL_BASE_BUFFER_H_
