// Memory and threads: asked before they are taken, and gone without where there are none.
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "cli/failure.h"
#include "cli/tool_run.h"
#include "media/picture_files.h"
#include "media/psd_file.h"

namespace vitrell::cli {
namespace {

using media::NoisePicture;
using media::WritePictureFile;

namespace fs = std::filesystem;

std::string Big(uint32_t number, int size) {
  std::string bytes;
  for (int i = size - 1; i >= 0; --i) bytes += static_cast<char>(number >> (8 * i) & 0xffU);
  return bytes;
}

// As the PNG standard computes it.
uint32_t Crc(const std::string& bytes) {
  uint32_t crc = 0xffffffffU;
  for (const char byte : bytes) {
    crc ^= static_cast<uint8_t>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1U ^ ((crc & 1U) != 0 ? 0xedb88320U : 0U);
  }
  return ~crc;
}

std::string Chunk(const std::string& name, const std::string& data) {
  return Big(static_cast<uint32_t>(data.size()), 4) + name + data + Big(Crc(name + data), 4);
}

// 8-bit grey of any size, with hardly any pixels.
std::string HollowPng(uint32_t width, uint32_t height) {
  return "\x89PNG\r\n\x1a\n" +
         Chunk("IHDR", Big(width, 4) + Big(height, 4) + std::string("\x08\0\0\0\0", 5)) +
         Chunk("IDAT", std::string("\x78\x01\x03\0\0\0\0\x01", 8)) + Chunk("IEND", "");
}

class ResourcesRunTest : public ToolTest {
 protected:
  static constexpr long kLittle = 300000;  // kB
};

TEST_F(ResourcesRunTest, AHeaderAloneCostsNoMemory) {
  WriteFile("in.png", HollowPng(30000, 30000));
  ASSERT_LT(fs::file_size(InFolder("in.png")), 70U);
  const ToolResult result = Run({"render", "in.png", "out.png"});
  ExpectMessage(result, 1, {"in.png"});
  EXPECT_LT(result.maxKilobytes, kLittle);
}

// The readers of these decode whole pictures when they open them.
TEST_F(ResourcesRunTest, HeadersOfOtherFormatsCostNoMemory) {
  WriteFile("in.gif", "GIF89a\x30\x75\x30\x75" + std::string("\x80\0\0", 3) + std::string(6, 'c') +
                          "," + std::string(100, 'x'));
  WriteFile("in.j2k", std::string("\xff\x4f\xff\x51\0\x29\0\0", 8) + Big(29999, 4) + Big(29999, 4) +
                          std::string(100, '\0'));
  for (const char* name : {"in.gif", "in.j2k"}) {
    const ToolResult result = Run({"render", name, "out.png", "--max-pixels", "800000000"});
    ExpectMessage(result, 1, {name, "more than the 800000000 allowed", "--max-pixels"});
    EXPECT_LT(result.maxKilobytes, kLittle);
  }
}

// Its reader takes memory for a block before it looks whether the file holds it.
TEST_F(ResourcesRunTest, LengthsInAPsdCostNoMemory) {
  const media::FilePicture picture = NoisePicture(50, 40, 3, OIIO::TypeDesc::UINT8, 1);
  media::WritePsdFile(InFolder("in.psd"), {picture, 6, {{"layer", 0, 0, picture}}});
  EXPECT_EQ(Run({"render", "in.psd", "whole.png"}).exitCode, 0);
  const std::string whole = ReadFile("in.psd");
  constexpr std::size_t kExifLength = 42;
  std::string damaged = whole;
  damaged[kExifLength] = '\x7f';
  WriteFile("in.psd", damaged);
  const ToolResult result = Run({"render", "in.psd", "out.png"});
  ExpectMessage(result, 1, {"in.psd: is damaged", "longer than the file"});
  EXPECT_LT(result.maxKilobytes, kLittle);
}

TEST_F(ResourcesRunTest, MorePixelsThanAllowedAreRefused) {
  WritePictureFile(InFolder("in.png"), NoisePicture(50, 40, 3, OIIO::TypeDesc::UINT8, 1));
  ExpectMessage(Run({"render", "in.png", "out.png", "--max-pixels", "1999"}), 1,
                {"in.png", "50 x 40", "1999", "--max-pixels"});
  EXPECT_EQ(Run({"render", "in.png", "out.png", "--max-pixels", "2000"}).exitCode, 0);
  ExpectMessage(Run({"render", "in.png", "o.png", "--custom-layer", "in.png", "--set",
                     "lens.type=custom", "--max-pixels", "0"}),
                2, {"--max-pixels"});
}

// For the programs that a test starts meanwhile.
class AddressLimit {
 public:
  explicit AddressLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_AS, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    ::setrlimit(RLIMIT_AS, &limit);
  }
  ~AddressLimit() { ::setrlimit(RLIMIT_AS, &before_); }
  AddressLimit(const AddressLimit&) = delete;
  AddressLimit& operator=(const AddressLimit&) = delete;

 private:
  rlimit before_{};
};

// The least address space in which the program comes to its own work, to 128 MiB.
TEST_F(ResourcesRunTest, LittleAddressSpaceIsTold) {
  constexpr rlim_t kStep = 128 << 20;
  constexpr rlim_t kMost = rlim_t{16} << 30;
  const auto runsWith = [this](rlim_t bytes) {
    const AddressLimit limit(bytes);
    return Run({"formats"}).exitCode == 0;
  };
  rlim_t least = kMost;
  rlim_t tooLittle = 0;
  if (!runsWith(least)) GTEST_SKIP() << "this build takes all addresses for itself";
  while (least - tooLittle > kStep) {
    const rlim_t middle = tooLittle + (least - tooLittle) / 2;
    (runsWith(middle) ? least : tooLittle) = middle;
  }
  WriteFile("hollow.png", HollowPng(20000, 20000));
  WritePictureFile(InFolder("in.png"), NoisePicture(1500, 1000, 4, OIIO::TypeDesc::UINT8, 1));
  bool rendered = false;
  for (const unsigned more : {0U, 1U, 2U, 4U, 8U}) {
    const AddressLimit limit(least + more * kStep);
    ExpectMessage(Run({"render", "hollow.png", "none.png"}), 1,
                  {"hollow.png", "20000 x 20000", "of memory"});
    const ToolResult result = Run({"render", "in.png", "out.png", "--force"});
    if (result.exitCode != 0) ExpectMessage(result, 1, {"memory"});
    rendered = result.exitCode == 0;
  }
  EXPECT_TRUE(rendered);
}

// The machine's own numbers cannot be had otherwise than by showing the program others.
TEST_F(ResourcesRunTest, LittleFreeMemoryIsTold) {
  WriteFile("meminfo", "MemTotal: 4000000 kB\nMemFree: 9000 kB\nMemAvailable: 200000 kB\n");
  WriteFile("hollow.png", HollowPng(4000, 3000));
  const std::string command = "cd '" + Folder().string() +
                              "' && { unshare -m true 2> said || exit 97; } && "
                              "unshare -m sh -c 'mount --bind meminfo /proc/meminfo || exit 97; "
                              "exec \"$0\" render hollow.png out.png' " VITRELL_TOOL_PATH
                              " 2> said";
  // NOLINTNEXTLINE(cert-env33-c,concurrency-mt-unsafe)
  const int status = std::system(command.c_str());
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) != kFailed)
    GTEST_SKIP() << "no right to mount here: " << ReadFile("said");
  const std::string said = ReadFile("said");
  EXPECT_NE(said.find("hollow.png: is 4000 x 3000 pixels and needs about "), std::string::npos)
      << said;
  EXPECT_NE(said.find("0.2 GB are free"), std::string::npos) << said;
}

// Down to none beside the first.
TEST_F(ResourcesRunTest, WithoutThreadsItGoesOn) {
  ::chmod(Folder().c_str(), 0777);
  WritePictureFile(InFolder("in.png"), NoisePicture(500, 400, 3, OIIO::TypeDesc::UINT8, 1));
  ToolOptions options;
  ASSERT_EQ(Run({"render", "in.png", "many.png", "--threads", "8"}).exitCode, 0);
  for (const long limit : {1, 2, 5}) {
    options.maxProcesses = limit;
    const ToolResult few =
        Run({"render", "in.png", "few.png", "--force", "--threads", "8"}, options);
    if (few.exitCode == 98 || few.exitCode == 99) {
      GTEST_SKIP() << "the program cannot be run with fewer rights here";
    }
    ASSERT_EQ(few.exitCode, 0) << limit << ": " << few.err;
    EXPECT_EQ(ReadFile("few.png"), ReadFile("many.png"));
    std::filesystem::remove(InFolder("few.png"));
  }
}

}  // namespace
}  // namespace vitrell::cli
