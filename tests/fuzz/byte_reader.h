// Small choices taken from the bytes of one execution.
#ifndef VITRELL_FUZZ_BYTE_READER_H_
#define VITRELL_FUZZ_BYTE_READER_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vitrell::fuzz {

// Zeros follow the last byte, so that every input is a whole one.
class ByteReader {
 public:
  ByteReader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  bool AtEnd() const { return position_ == size_; }
  std::uint8_t Byte() { return AtEnd() ? std::uint8_t{0} : data_[position_++]; }
  // 0 to n - 1, for n from 1 to 256.
  int Below(int n) { return Byte() % n; }
  bool Flag() { return (Byte() & 1U) != 0; }
  // One in sixteen; never once the bytes have ended.
  bool Rarely() { return (Byte() & 15U) == 15U; }
  std::int32_t Word() {
    std::uint32_t word = 0;
    for (int i = 0; i < 4; ++i) word = word << 8U | Byte();
    return static_cast<std::int32_t>(word);
  }
  std::string_view Rest() {
    const std::string_view rest(reinterpret_cast<const char*>(data_) + position_,
                                size_ - position_);
    position_ = size_;
    return rest;
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t position_ = 0;
};

}  // namespace vitrell::fuzz

#endif  // VITRELL_FUZZ_BYTE_READER_H_
