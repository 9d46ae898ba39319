// Allocates guarded worlds and checks their guards.
#include "headless/world_buffer.h"

#include <cstring>
#include <random>
#include <utility>

#include "headless/host_error.h"
#include "headless/platform.h"

namespace vitrell::headless {
namespace {

constexpr std::size_t kAlignment = 64;
constexpr std::size_t kBandBytes = 256;
// 0xCBCB is above 32768 and thus no legal 16-bit channel; 0xCB is a rare 8-bit one.
constexpr std::uint8_t kPoison = 0xCB;

// Varies from byte to byte, so that a constant fill does not match it.
std::byte GuardByte(std::size_t offset) { return static_cast<std::byte>(0xA7U + 31U * offset); }

std::size_t RoundUp(std::size_t value, std::size_t unit) {
  return (value + unit - 1) / unit * unit;
}

[[noreturn]] void ThrowNoMemory(const PF_LayerDef& def) {
  throw HostError("There is not enough memory for a picture of " + std::to_string(def.width) +
                  " x " + std::to_string(def.height) + " pixels; use a smaller one.");
}

void VerifyShape(std::int32_t width, std::int32_t height, bool deep, const WorldLayout& layout) {
  if (width < 0 || height < 0 || width > kMaxWorldSize || height > kMaxWorldSize) {
    throw HostError("A picture of " + std::to_string(width) + " x " + std::to_string(height) +
                    " pixels is not possible; each side has to be between 0 and " +
                    std::to_string(kMaxWorldSize) + " pixels.");
  }
  const bool odd = layout.rowPadding % 2 != 0 || layout.baseOffset % 2 != 0;
  const bool outside = layout.rowPadding < 0 || layout.baseOffset < 0 ||
                       layout.baseOffset >= static_cast<std::int32_t>(kAlignment);
  if (outside || (deep && odd)) {
    throw HostError(
        "The row padding or the base offset of a picture does not suit it; neither may be negative "
        "or, for 16-bit pixels, odd, and the offset has to be below 64.");
  }
}

}  // namespace

WorldBuffer::WorldBuffer(std::int32_t width, std::int32_t height, bool deep,
                         const WorldLayout& layout)
    : layout_(layout), deep_(deep) {
  VerifyShape(width, height, deep, layout);
  def_.world_flags = deep ? PF_WorldFlag_DEEP : 0;
  def_.width = width;
  def_.height = height;
  def_.rowbytes = width * static_cast<A_long>(PixelBytes()) + layout.rowPadding;
  def_.extent_hint = {0, 0, width, height};
  def_.pix_aspect_ratio = {1, 1};
  if (layout.guardPages == GuardPages::kNone) {
    AllocateBetweenBands();
  } else {
    AllocateBetweenPages();
  }
  def_.data = pixels_;
  FillGuards();
  FillFresh();
}

WorldBuffer::~WorldBuffer() {
  if (allocation_ == nullptr) return;
  if (layout_.guardPages == GuardPages::kNone) {
    FreeAligned(allocation_);
  } else {
    UnmapBetweenClosedPages(watched_, watchedBytes_);
  }
}

WorldBuffer::WorldBuffer(WorldBuffer&& other) noexcept { Swap(other); }

WorldBuffer& WorldBuffer::operator=(WorldBuffer&& other) noexcept {
  Swap(other);
  return *this;
}

WorldBuffer::WorldBuffer(const WorldBuffer& other)
    : WorldBuffer(other.Width(), other.Height(), other.deep_, other.layout_) {
  def_.extent_hint = other.def_.extent_hint;
  def_.world_flags = other.def_.world_flags;
  const std::size_t rowBytes = static_cast<std::size_t>(Width()) * PixelBytes();
  for (std::int32_t y = 0; y < Height(); ++y) std::memcpy(Row(y), other.Row(y), rowBytes);
}

WorldBuffer& WorldBuffer::operator=(const WorldBuffer& other) {
  WorldBuffer copy(other);
  Swap(copy);
  return *this;
}

void WorldBuffer::Swap(WorldBuffer& other) noexcept {
  std::swap(layout_, other.layout_);
  std::swap(deep_, other.deep_);
  std::swap(def_, other.def_);
  std::swap(pixels_, other.pixels_);
  std::swap(watched_, other.watched_);
  std::swap(watchedBytes_, other.watchedBytes_);
  std::swap(allocation_, other.allocation_);
}

void WorldBuffer::AllocateBetweenBands() {
  const std::size_t picture =
      static_cast<std::size_t>(def_.rowbytes) * static_cast<std::size_t>(def_.height);
  const auto offset = static_cast<std::size_t>(layout_.baseOffset);
  watchedBytes_ = RoundUp(kBandBytes + offset + picture + kBandBytes, kAlignment);
  allocation_ = AllocateAligned(kAlignment, watchedBytes_);
  if (allocation_ == nullptr) ThrowNoMemory(def_);
  watched_ = static_cast<std::byte*>(allocation_);
  pixels_ = watched_ + kBandBytes + offset;
}

void WorldBuffer::AllocateBetweenPages() {
  // The last row has no padding, so that the last pixel itself abuts the page.
  std::size_t picture = 0;
  if (def_.height > 0) {
    picture = static_cast<std::size_t>(def_.rowbytes) * static_cast<std::size_t>(def_.height - 1) +
              static_cast<std::size_t>(def_.width) * PixelBytes();
  }
  watchedBytes_ = RoundUp(picture == 0 ? 1 : picture, PageBytes());
  watched_ = MapBetweenClosedPages(watchedBytes_);
  if (watched_ == nullptr) ThrowNoMemory(def_);
  allocation_ = watched_;
  pixels_ = watched_;
  if (layout_.guardPages == GuardPages::kAtEnd) pixels_ += watchedBytes_ - picture;
}

void WorldBuffer::FillGuards() {
  ForEachGuard([this](std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) watched_[i] = GuardByte(i);
    return true;
  });
}

template <typename Function>
void WorldBuffer::ForEachGuard(const Function& function) const {
  const auto first = static_cast<std::size_t>(pixels_ - watched_);
  const std::size_t rowPixels = static_cast<std::size_t>(Width()) * PixelBytes();
  if (!function(std::size_t{0}, first)) return;
  std::size_t begin = first;
  for (std::int32_t y = 0; y < Height(); ++y) {
    begin = first + static_cast<std::size_t>(y) * static_cast<std::size_t>(RowBytes()) + rowPixels;
    const bool last = y == Height() - 1;
    const std::size_t end =
        last ? watchedBytes_ : begin + static_cast<std::size_t>(layout_.rowPadding);
    if (!function(begin, end)) return;
  }
  if (Height() == 0) function(begin, watchedBytes_);
}

std::byte* WorldBuffer::Row(std::int32_t y) {
  return pixels_ + static_cast<std::ptrdiff_t>(y) * RowBytes();
}

const std::byte* WorldBuffer::Row(std::int32_t y) const {
  return pixels_ + static_cast<std::ptrdiff_t>(y) * RowBytes();
}

PF_Pixel& WorldBuffer::At8(std::int32_t x, std::int32_t y) {
  return reinterpret_cast<PF_Pixel*>(Row(y))[x];
}

const PF_Pixel& WorldBuffer::At8(std::int32_t x, std::int32_t y) const {
  return reinterpret_cast<const PF_Pixel*>(Row(y))[x];
}

PF_Pixel16& WorldBuffer::At16(std::int32_t x, std::int32_t y) {
  return reinterpret_cast<PF_Pixel16*>(Row(y))[x];
}

const PF_Pixel16& WorldBuffer::At16(std::int32_t x, std::int32_t y) const {
  return reinterpret_cast<const PF_Pixel16*>(Row(y))[x];
}

void WorldBuffer::FillBytes(std::uint8_t value) {
  const std::size_t rowBytes = static_cast<std::size_t>(Width()) * PixelBytes();
  for (std::int32_t y = 0; y < Height(); ++y) std::memset(Row(y), value, rowBytes);
}

void WorldBuffer::FillFresh() {
  if (layout_.fresh == FreshPixels::kPoison) FillBytes(kPoison);
  if (layout_.fresh == FreshPixels::kZero) FillBytes(0);
}

void WorldBuffer::FillNoise(std::uint64_t seed) {
  std::mt19937_64 random(seed);
  constexpr std::uint64_t kWhite16Levels = PF_MAX_CHAN16 + 1;
  for (std::int32_t y = 0; y < Height(); ++y) {
    for (std::int32_t x = 0; x < Width(); ++x) {
      const std::uint64_t bits = random();
      if (deep_) {
        const auto level = [bits](unsigned shift) {
          return static_cast<A_u_short>((bits >> shift & 0xFFFFU) * kWhite16Levels >> 16U);
        };
        At16(x, y) = {level(0), level(16), level(32), level(48)};
      } else {
        const auto level = [bits](unsigned shift) { return static_cast<A_u_char>(bits >> shift); };
        At8(x, y) = {level(0), level(16), level(32), level(48)};
      }
    }
  }
}

std::optional<std::string> WorldBuffer::Damage() const {
  std::optional<std::string> damage;
  ForEachGuard([&](std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
      if (watched_[i] != GuardByte(i)) {
        damage = DescribeDamage(i);
        return false;
      }
    }
    return true;
  });
  return damage;
}

std::string WorldBuffer::DescribeDamage(std::size_t watchedOffset) const {
  const std::ptrdiff_t offset = watched_ + watchedOffset - pixels_;
  const std::ptrdiff_t picture = static_cast<std::ptrdiff_t>(RowBytes()) * Height();
  if (offset < 0) {
    return "The byte " + std::to_string(-offset) + " before the first pixel was overwritten.";
  }
  if (offset >= picture) {
    return "The byte " + std::to_string(offset - picture + 1) +
           " after the last row was overwritten.";
  }
  const std::ptrdiff_t rowPixels =
      static_cast<std::ptrdiff_t>(Width()) * static_cast<std::ptrdiff_t>(PixelBytes());
  return "The byte " + std::to_string(offset % RowBytes() - rowPixels + 1) +
         " of the padding behind row " + std::to_string(offset / RowBytes()) + " was overwritten.";
}

std::uint64_t WorldBuffer::Checksum() const {
  constexpr std::uint64_t kOffsetBasis = 0xCBF29CE484222325U;
  constexpr std::uint64_t kPrime = 0x9E3779B97F4A7C15U;
  std::uint64_t hash = kOffsetBasis;
  const auto mix = [&hash](std::uint64_t word) {
    hash = (hash ^ word) * kPrime;
    hash ^= hash >> 29U;
  };
  const std::size_t rowBytes = static_cast<std::size_t>(Width()) * PixelBytes();
  for (std::int32_t y = 0; y < Height(); ++y) {
    const std::byte* row = Row(y);
    std::size_t i = 0;
    for (; i + sizeof(std::uint64_t) <= rowBytes; i += sizeof(std::uint64_t)) {
      std::uint64_t word = 0;
      std::memcpy(&word, row + i, sizeof(word));
      mix(word);
    }
    for (; i < rowBytes; ++i) mix(std::to_integer<std::uint64_t>(row[i]));
  }
  return hash;
}

}  // namespace vitrell::headless
