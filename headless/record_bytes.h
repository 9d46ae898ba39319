// Byte-wise comparison of host records.
#ifndef VITRELL_HEADLESS_RECORD_BYTES_H_
#define VITRELL_HEADLESS_RECORD_BYTES_H_

#include <cstddef>
#include <cstring>

namespace vitrell::headless {

// Whether a record still equals an earlier copy byte for byte, padding included.
template <typename Record>
bool SameBytes(const Record& a, const Record& b) {
  return std::memcmp(reinterpret_cast<const std::byte*>(&a), reinterpret_cast<const std::byte*>(&b),
                     sizeof(Record)) == 0;
}

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_RECORD_BYTES_H_
