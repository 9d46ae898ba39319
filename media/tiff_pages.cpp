// Directories of TIFF files. Tags, types and sizes are those of TIFF 6.0.
#include "media/tiff_pages.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace vitrell::media {
namespace {

constexpr std::uint32_t kFirst = 4;  // where the place of the first directory stands
constexpr std::uint32_t kTiffHeadBytes = 8;
constexpr std::uint32_t kEntryBytes = 12;
constexpr std::uint32_t kValue = 8;  // of an entry, or where its value lies
constexpr std::uint16_t kLong = 4;
constexpr std::uint16_t kDirectoryType = 13;

// Tags whose values are places in the file: free space, strips, tiles, and the parts of old JPEG.
constexpr std::array<std::uint16_t, 7> kPlaces = {273, 288, 324, 513, 519, 520, 521};
// Further directories, EXIF, GPS, and what EXIF says of interoperability.
constexpr std::array<std::uint16_t, 4> kDirectories = {330, 34665, 34853, 40965};
constexpr int kDeepest = 4;

template <typename Number>
Number NumberAt(std::string_view file, std::uint64_t at, bool swapped) {
  Number number = 0;
  if (at + sizeof(Number) > file.size()) throw std::runtime_error("a page is cut off");
  std::memcpy(&number, file.data() + at, sizeof(Number));
  if (!swapped) return number;
  return sizeof(Number) == 2 ? static_cast<Number>(__builtin_bswap16(static_cast<uint16_t>(number)))
                             : static_cast<Number>(__builtin_bswap32(number));
}

std::uint16_t Short(std::string_view file, std::uint64_t at) {
  return NumberAt<std::uint16_t>(file, at, false);
}

std::uint32_t Long(std::string_view file, std::uint64_t at) {
  return NumberAt<std::uint32_t>(file, at, false);
}

constexpr bool kLittle = std::endian::native == std::endian::little;
constexpr std::string_view kOwnMark(kLittle ? "II*\0" : "MM\0*", 4);
constexpr std::string_view kOtherMark(kLittle ? "MM\0*" : "II*\0", 4);

std::uint64_t BytesOf(std::uint16_t type) {
  constexpr std::array<std::uint8_t, 14> kBytes = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
  return type < kBytes.size() ? kBytes.at(type) : 0;
}

template <typename List>
bool Lists(const List& list, std::uint16_t tag) {
  return std::find(list.begin(), list.end(), tag) != list.end();
}

}  // namespace

bool BeginWithPage(std::span<char> file, int page) {
  const std::string_view bytes(file.data(), file.size());
  const bool swapped = bytes.starts_with(kOtherMark);
  if (!swapped && !bytes.starts_with(kOwnMark)) return false;
  std::uint64_t link = kFirst;
  try {
    for (int i = 0; i < page; ++i) {
      const std::uint64_t directory = NumberAt<std::uint32_t>(bytes, link, swapped);
      if (directory == 0) return false;
      const std::uint64_t entries = NumberAt<std::uint16_t>(bytes, directory, swapped);
      link = directory + 2 + kEntryBytes * entries;
    }
    if (NumberAt<std::uint32_t>(bytes, link, swapped) == 0) return false;
  } catch (const std::runtime_error&) {
    return false;
  }
  std::memcpy(file.data() + kFirst, file.data() + link, sizeof(std::uint32_t));
  return true;
}

void TiffJoiner::Put(std::uint32_t place, std::uint32_t number) {
  sink_.pwrite(&number, sizeof(number), std::int64_t{place} + shift_);
}

void TiffJoiner::MoveEntry(std::string_view file, std::uint32_t entry, int depth,
                           std::vector<Directory>* found) {
  const std::uint16_t tag = Short(file, entry);
  const std::uint16_t type = Short(file, entry + 2);
  const std::uint32_t count = Long(file, entry + 4);
  std::uint32_t values = entry + kValue;
  if (BytesOf(type) * count > sizeof(std::uint32_t)) {
    values = Long(file, entry + kValue);
    Put(entry + kValue, values + shift_);
  }
  const bool directories = type == kDirectoryType || Lists(kDirectories, tag);
  if (!directories && !Lists(kPlaces, tag)) return;
  if (type != kLong && type != kDirectoryType) throw std::runtime_error("a page is laid out oddly");
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint32_t place = values + i * static_cast<std::uint32_t>(sizeof(std::uint32_t));
    const std::uint32_t target = Long(file, place);
    Put(place, target + shift_);
    if (directories) found->push_back({target, depth + 1});
  }
}

void TiffJoiner::MoveDirectories(std::string_view file, std::uint32_t first) {
  std::vector<Directory> waiting = {{first, 0}};
  while (!waiting.empty()) {
    const Directory directory = waiting.back();
    waiting.pop_back();
    if (directory.depth > kDeepest) throw std::runtime_error("a page is laid out oddly");
    const std::uint32_t entries = Short(file, directory.place);
    for (std::uint32_t i = 0; i < entries; ++i) {
      MoveEntry(file, directory.place + 2 + i * kEntryBytes, directory.depth, &waiting);
    }
  }
}

void TiffJoiner::Add(std::string_view file, int /*delay*/) {
  if (!file.starts_with(kOwnMark)) throw std::runtime_error("a page has more than 4 GB");
  const bool begins = end_ == 0;
  // Directories and numbers lie at even places.
  const std::uint64_t place = begins ? 0 : end_ + end_ % 2;
  const std::uint32_t skipped = begins ? 0 : kTiffHeadBytes;
  if (place + file.size() > std::numeric_limits<std::uint32_t>::max()) {
    throw std::runtime_error("the pages have more than 4 GB together; render fewer at once");
  }
  sink_.pwrite(file.data() + skipped, file.size() - skipped, static_cast<std::int64_t>(place));
  end_ = place + file.size() - skipped;
  shift_ = static_cast<std::uint32_t>(place - skipped);
  const std::uint32_t directory = Long(file, kFirst);
  if (!begins) {
    MoveDirectories(file, directory);
    const std::uint32_t moved = directory + shift_;
    sink_.pwrite(&moved, sizeof(moved), static_cast<std::int64_t>(link_));
  }
  const std::uint32_t next = directory + 2 + kEntryBytes * Short(file, directory);
  if (Long(file, next) != 0) throw std::runtime_error("a page was not written as it should be");
  link_ = std::uint64_t{next} + shift_;
}

}  // namespace vitrell::media
