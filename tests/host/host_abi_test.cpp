// The host interface header against the host's layout facts, at compile time.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "host/host_api.h"

namespace {

#define ABI_SIZEOF(type, bytes) static_assert(sizeof(type) == (bytes), #type);
#define ABI_ALIGNOF(type, bytes) static_assert(alignof(type) == (bytes), #type);
#define ABI_FIELD(type, field, offset, bytes)                         \
  static_assert(offsetof(type, field) == (offset), #type "." #field); \
  static_assert(sizeof(type::field) == (bytes), #type "." #field);
#define ABI_CONSTANT(name, value) \
  static_assert(static_cast<std::int64_t>(name) == static_cast<std::int64_t>(value), #name);
#include "host/host_abi_facts.inc"
#undef ABI_SIZEOF
#undef ABI_ALIGNOF
#undef ABI_FIELD
#undef ABI_CONSTANT

// The same lines counted, so that an empty list is seen.
constexpr int kSizes = 0
#define ABI_SIZEOF(type, bytes) +1
#define ABI_ALIGNOF(type, bytes)
#define ABI_FIELD(type, field, offset, bytes)
#define ABI_CONSTANT(name, value)
#include "host/host_abi_facts.inc"
#undef ABI_SIZEOF
#undef ABI_FIELD
#undef ABI_CONSTANT
    ;
constexpr int kFields = 0
#define ABI_SIZEOF(type, bytes)
#define ABI_FIELD(type, field, offset, bytes) +1
#define ABI_CONSTANT(name, value)
#include "host/host_abi_facts.inc"
#undef ABI_FIELD
#undef ABI_CONSTANT
    ;
constexpr int kConstants = 0
#define ABI_FIELD(type, field, offset, bytes)
#define ABI_CONSTANT(name, value) +1
#include "host/host_abi_facts.inc"
    ;
#undef ABI_SIZEOF
#undef ABI_ALIGNOF
#undef ABI_FIELD
#undef ABI_CONSTANT

TEST(HostAbiTest, ListOfFactsIsComplete) {
  EXPECT_GE(kSizes, 36);
  EXPECT_GE(kFields, 311);
  EXPECT_GE(kConstants, 140);
}

TEST(HostAbiTest, SuiteNamesAreTheHostsBytes) {
  // Exact letters, the small "i" of the 16-bit suite among them.
  EXPECT_EQ(std::string(kPFAnsiSuite, sizeof(kPFAnsiSuite)), std::string("PF ANSI Suite\0", 14));
  EXPECT_EQ(std::string(kPFParamUtilsSuite), "PF Param Utils Suite");
  EXPECT_EQ(std::string(kPFIterate8Suite), "PF Iterate8 Suite");
  EXPECT_EQ(std::string(kPFIterate16Suite), "PF iterate16 Suite");
  EXPECT_EQ(std::string(kPFWorldSuite), "PF World Suite");
}

TEST(HostAbiTest, SuiteVersions) {
  EXPECT_EQ(kPFAnsiSuiteVersion1, 1);
  EXPECT_EQ(kPFParamUtilsSuiteVersion3, 3);
  EXPECT_EQ(kPFIterate8SuiteVersion1, 1);
  EXPECT_EQ(kPFIterate16SuiteVersion1, 1);
  EXPECT_EQ(kPFWorldSuiteVersion2, 2);
}

TEST(HostAbiTest, PixelFormatsAreFourLettersInMemory) {
  // All supported systems are little-endian: the first letter is the lowest byte.
  const auto letters = [](PF_PixelFormat format) {
    char bytes[sizeof(format)];
    std::memcpy(bytes, &format, sizeof(format));
    return std::string(bytes, sizeof(bytes));
  };
  EXPECT_EQ(letters(PF_PixelFormat_ARGB32), "argb");
  EXPECT_EQ(letters(PF_PixelFormat_ARGB64), "ae16");
  EXPECT_EQ(letters(PF_PixelFormat_ARGB128), "ae32");
  EXPECT_EQ(letters(PF_PixelFormat_INVALID), "badf");
}

TEST(HostAbiTest, HostIdentityReadsFromTheHighByte) {
  EXPECT_EQ(kHostAppId, 'F' << 24 | 'X' << 16 | 'T' << 8 | 'C');
}

TEST(HostAbiTest, VersionWordExamples) {
  EXPECT_EQ(PackEffectVersion(1, 0, 0, PF_Stage_DEVELOP, 1), 0x00080001U);
  EXPECT_EQ(PackEffectVersion(5, 6, 0, PF_Stage_DEVELOP, 1), 0x002B0001U);
  EXPECT_EQ(PackEffectVersion(1, 1, 0, PF_Stage_DEVELOP, 1), 0x00088001U);
  // 1 << 19 | 5 << 11 | 1: this effect's own word.
  EXPECT_EQ(PackEffectVersion(1, 0, 5, PF_Stage_DEVELOP, 1), 534529U);
  EXPECT_EQ(PackEffectVersion(7, 15, 15, PF_Stage_RELEASE, 511), 0x003FFFFFU);
}

}  // namespace
