// Blocks of GIF files. Offsets and marks are those of GIF89a.
#include "media/gif_pages.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace vitrell::media {
namespace {

constexpr std::size_t kScreen = 6;  // width and height, before the flags
constexpr std::size_t kGifHeadBytes = 13;
constexpr std::size_t kImageBytes = 10;   // place, size and flags of a frame
constexpr std::size_t kControlBytes = 8;  // flags, delay and transparent colour of a frame
constexpr char kExtension = '!';
constexpr char kImage = ',';
constexpr char kControl = '\xf9';
constexpr std::string_view kLoops("!\xff\x0bNETSCAPE2.0\x03\x01", 16);
constexpr unsigned kHasColours = 0x80;
constexpr unsigned kDisposal = 0x1c;
constexpr unsigned kLeave = 1U << 2;
constexpr unsigned kClear = 2U << 2;

unsigned ByteAt(std::string_view file, std::size_t at) {
  return at < file.size() ? static_cast<uint8_t>(file[at]) : 0;
}

int NumberAt(std::string_view file, std::size_t at) {
  return static_cast<int>(ByteAt(file, at) | ByteAt(file, at + 1) << 8U);
}

std::string Number(int number) {
  return {static_cast<char>(number & 0xff), static_cast<char>(number >> 8 & 0xff)};
}

std::size_t ColourBytes(unsigned flags) {
  return (flags & kHasColours) == 0 ? 0 : std::size_t{3} << ((flags & 7U) + 1);
}

std::size_t FirstBlock(std::string_view file) {
  return kGifHeadBytes + ColourBytes(ByteAt(file, kScreen + 4));
}

// The end of the block that begins here; beyond the end of the file if the file is truncated.
std::size_t EndOfBlock(std::string_view file, std::size_t at) {
  at += file[at] == kImage ? kImageBytes + ColourBytes(ByteAt(file, at + kImageBytes - 1)) + 1 : 2;
  while (at < file.size()) {
    const unsigned size = ByteAt(file, at);
    at += 1 + size;
    if (size == 0) return at;
  }
  return file.size() + 1;
}

bool IsBlock(std::string_view file, std::size_t at) {
  return at < file.size() && (file[at] == kExtension || file[at] == kImage);
}

}  // namespace

GifTimes FindGifTimes(std::string_view file) {
  GifTimes times;
  int delay = 0;
  for (std::size_t at = FirstBlock(file); IsBlock(file, at); at = EndOfBlock(file, at)) {
    if (file[at] == kImage) {
      times.delays.push_back(delay);
      delay = 0;
    } else if (ByteAt(file, at + 1) == static_cast<uint8_t>(kControl)) {
      delay = NumberAt(file, at + 4);
    } else if (file.substr(at, kLoops.size()) == kLoops) {
      times.loops = NumberAt(file, at + kLoops.size());
    }
  }
  return times;
}

void GifJoiner::Begin(std::string_view head) {
  Write(head);
  if (!loops_) return;
  Write(kLoops);
  Write(Number(*loops_) + '\0');
}

// A frame of another size would not cover the one before, which is therefore cleared.
void GifJoiner::ClearBefore(int width, int height) {
  if (frames_ > 0 && (width != width_ || height != height_)) {
    char flags = 0;
    sink_.pread(&flags, 1, static_cast<int64_t>(lastFlags_));
    flags = static_cast<char>((static_cast<uint8_t>(flags) & ~kDisposal) | kClear);
    sink_.pwrite(&flags, 1, static_cast<int64_t>(lastFlags_));
  }
  width_ = width;
  height_ = height;
  mostWidth_ = std::max(mostWidth_, width);
  mostHeight_ = std::max(mostHeight_, height);
}

void GifJoiner::Add(std::string_view file, int delay) {
  const std::size_t first = FirstBlock(file);
  std::string control("!\xf9\x04\0\0\0\0\0", kControlBytes);
  for (std::size_t at = first; IsBlock(file, at); at = EndOfBlock(file, at)) {
    const std::size_t end = EndOfBlock(file, at);
    if (file.substr(at, 2) == control.substr(0, 2)) control = file.substr(at, kControlBytes);
    if (file[at] != kImage) continue;
    if (end > file.size() || (ByteAt(file, at + kImageBytes - 1) & kHasColours) == 0) break;
    if (frames_ == 0) Begin(file.substr(0, first));
    ClearBefore(NumberAt(file, at + 5), NumberAt(file, at + 7));
    control[3] = static_cast<char>((static_cast<uint8_t>(control[3]) & ~kDisposal) | kLeave);
    control.replace(4, 2, Number(delay));
    lastFlags_ = static_cast<std::size_t>(sink_.tell()) + 3;
    Write(control);
    Write(file.substr(at, end - at));
    ++frames_;
    return;
  }
  throw std::runtime_error("a frame was not written as it should be");
}

void GifJoiner::Finish() {
  Write(";");
  const std::string size = Number(mostWidth_) + Number(mostHeight_);
  sink_.pwrite(size.data(), size.size(), kScreen);
}

}  // namespace vitrell::media
