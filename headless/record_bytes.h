// Byte-wise comparison of host records.
#ifndef VITRELL_HEADLESS_RECORD_BYTES_H_
#define VITRELL_HEADLESS_RECORD_BYTES_H_

#include <cstddef>
#include <cstring>

namespace vitrell::headless {

// Whether nobody wrote into a record since it was copied: its padding counts, too.
template <typename Record>
bool SameBytes(const Record& a, const Record& b) {
  return std::memcmp(reinterpret_cast<const std::byte*>(&a), reinterpret_cast<const std::byte*>(&b),
                     sizeof(Record)) == 0;
}

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_RECORD_BYTES_H_
