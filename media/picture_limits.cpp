// Checks sizes and memory before anything is allocated.
#include "media/picture_limits.h"

#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <limits>
#include <string>
#include <string_view>

#include "media/failure.h"
#include "media/picture.h"

namespace vitrell::media {
namespace {

constexpr std::size_t kProbedBytes = 65536;
// Layer, result, two working worlds and the one of a pass; and the lens, a double for each pixel.
constexpr std::int64_t kWorlds = 5;
constexpr std::int64_t kLensBytes = 8;

std::string HeadOf(const std::filesystem::path& file) {
  std::string head(kProbedBytes, '\0');
  std::ifstream stream(file, std::ios::binary);
  stream.read(head.data(), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<std::size_t>(stream.gcount()));
  return head;
}

// Zeros stand for what is missing at the end.
std::int64_t Number(const std::string& bytes, std::size_t at, int size, bool bigEndian) {
  std::int64_t number = 0;
  for (int i = 0; i < size; ++i) {
    const std::size_t place = at + static_cast<std::size_t>(bigEndian ? i : size - 1 - i);
    number = number << 8 | (place < bytes.size() ? static_cast<uint8_t>(bytes[place]) : 0);
  }
  return number;
}

// After the mark of a code stream's sizes: length, capabilities, then the ends of the grid and the
// picture's place in it.
std::optional<PictureSize> Jpeg2000Size(const std::string& head) {
  constexpr std::string_view kMark = "\xff\x4f\xff\x51";
  constexpr std::size_t kEnds = 8;
  constexpr std::size_t kPlace = 16;
  const std::size_t at = head.find(kMark);
  if (at == std::string::npos) return std::nullopt;
  const auto number = [&](std::size_t offset) { return Number(head, at + offset, 4, true); };
  return PictureSize{number(kEnds) - number(kPlace), number(kEnds + 4) - number(kPlace + 4)};
}

// The largest of all items: tiles and thumbnails have sizes, too.
std::optional<PictureSize> HeifSize(const std::string& head) {
  constexpr std::string_view kMark = "ispe";
  constexpr std::size_t kWidth = 8;
  std::optional<PictureSize> largest;
  for (std::size_t at = head.find(kMark); at != std::string::npos; at = head.find(kMark, at + 4)) {
    const PictureSize size{Number(head, at + kWidth, 4, true),
                           Number(head, at + kWidth + 4, 4, true)};
    if (!largest || size.width * size.height > largest->width * largest->height) largest = size;
  }
  return largest;
}

std::int64_t NumberInFile(const char* file, std::int64_t otherwise) {
  std::ifstream stream(file);
  std::int64_t number = 0;
  return stream >> number ? number : otherwise;
}

constexpr std::int64_t kUnlimited = std::numeric_limits<std::int64_t>::max();

std::int64_t FreeOnMachine() {
  std::ifstream stream("/proc/meminfo");
  std::string name;
  std::string rest;
  std::int64_t kilobytes = 0;
  while (stream >> name >> kilobytes && std::getline(stream, rest)) {
    if (name == "MemAvailable:") return kilobytes * 1024;
  }
  return kUnlimited;
}

std::int64_t FreeInGroup() {
  const std::int64_t limit = NumberInFile("/sys/fs/cgroup/memory.max", kUnlimited);
  if (limit == kUnlimited) return limit;
  return limit - NumberInFile("/sys/fs/cgroup/memory.current", 0);
}

std::int64_t FreeAddresses() {
  struct rlimit limit {};
  if (::getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return kUnlimited;
  constexpr std::int64_t kPage = 4096;
  const std::int64_t taken = NumberInFile("/proc/self/statm", 0) * kPage;
  const rlim_t most = std::min<rlim_t>(limit.rlim_cur, static_cast<rlim_t>(kUnlimited));
  return std::max<std::int64_t>(0, static_cast<std::int64_t>(most) - taken);
}

std::string Gigabytes(std::int64_t bytes) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f GB", static_cast<double>(bytes) / 1e9);
  return text.data();
}

std::int64_t EstimateBytes(const PictureSize& size, int channels, int sampleBytes) {
  const std::int64_t worldPixel = sampleBytes == 1 ? 4 : 8;
  // The samples of the input and those of the output.
  const std::int64_t samples = 2 * std::int64_t{channels} * sampleBytes;
  return size.width * size.height * (samples + kWorlds * worldPixel + kLensBytes);
}

}  // namespace

std::optional<PictureSize> PeekSize(const std::filesystem::path& file, const Format& format) {
  if (format.plugin == "gif") {
    const std::string head = HeadOf(file);
    return PictureSize{Number(head, 6, 2, false), Number(head, 8, 2, false)};
  }
  if (format.plugin == "jpeg2000") return Jpeg2000Size(HeadOf(file));
  if (format.plugin == "heif") return HeifSize(HeadOf(file));
  return std::nullopt;
}

std::int64_t AvailableMemory() {
  return std::min({FreeOnMachine(), FreeInGroup(), FreeAddresses()});
}

std::int64_t EstimateBytesOf(const std::filesystem::path& file) {
  const Format* const format = FormatOfFile(file);
  if (format == nullptr) return 0;
  constexpr int kUsualChannels = 4;
  if (const auto size = PeekSize(file, *format)) return EstimateBytes(*size, kUsualChannels, 1);
  const auto reader = MakeReader(*format);
  OIIO::ImageSpec spec;
  if (reader == nullptr || !reader->open(file.string(), spec, ReaderWishes())) return 0;
  const PictureSize size{std::max(spec.width, spec.full_width),
                         std::max(spec.height, spec.full_height)};
  const bool integers = spec.format.size() <= 2 && !spec.format.is_floating_point();
  return EstimateBytes(size, spec.nchannels, integers ? static_cast<int>(spec.format.size()) : 4);
}

void CheckCost(const std::filesystem::path& file, const PictureSize& size, int channels,
               int sampleBytes, const PictureLimits& limits) {
  const std::string told = file.string() + ": is " + std::to_string(size.width) + " x " +
                           std::to_string(size.height) + " pixels";
  if (size.width * size.height > limits.maxPixels) {
    throw Failure(kFailed, told + ", more than the " + std::to_string(limits.maxPixels) +
                               " allowed. Give --max-pixels to allow it.");
  }
  const std::int64_t needed = EstimateBytes(size, channels, sampleBytes);
  const std::int64_t available = AvailableMemory();
  if (needed > available) {
    throw Failure(kTryLater, told + " and needs about " + Gigabytes(needed) + " of memory; " +
                                 Gigabytes(available) + " are free. Use a smaller picture.");
  }
}

}  // namespace vitrell::media
