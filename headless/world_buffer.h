// A world that owns its pixels and detects writes outside them.
#ifndef VITRELL_HEADLESS_WORLD_BUFFER_H_
#define VITRELL_HEADLESS_WORLD_BUFFER_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "host/host_api.h"

namespace vitrell::headless {

// The largest width and height of a world.
inline constexpr std::int32_t kMaxWorldSize = 30000;

// Which end of the pixels abuts an inaccessible page, so that a stray access ends the process.
enum class GuardPages {
  kNone,     // Guard bands only.
  kAtEnd,    // The page follows the last pixel.
  kAtStart,  // The page precedes the first pixel.
};

// Initial content of the pixels. Poison makes reads of unwritten pixels visible; kUnset leaves the
// memory as it is, for measurements.
enum class FreshPixels { kPoison, kZero, kUnset };

struct WorldLayout {
  // Bytes between the end of one row's pixels and the next row; must be even for 16-bit worlds.
  std::int32_t rowPadding = 0;
  // Offset in bytes of the first pixel from a 64-byte boundary; odd ones are legal for 8-bit
  // worlds. Ignored with guard pages.
  std::int32_t baseOffset = 0;
  GuardPages guardPages = GuardPages::kNone;
  FreshPixels fresh = FreshPixels::kPoison;

  bool operator==(const WorldLayout&) const = default;
};

// An image of straight ARGB pixels, 8-bit (0..255) or 16-bit (0..32768), between two guard bands.
// Guard bands and row padding hold a pattern that Damage() checks.
class WorldBuffer {
 public:
  // Sizes range from 0 to 30000. Throws HostError for other sizes, for an odd layout of a 16-bit
  // world and if memory runs out.
  WorldBuffer(std::int32_t width, std::int32_t height, bool deep, const WorldLayout& layout = {});
  ~WorldBuffer();
  WorldBuffer(WorldBuffer&& other) noexcept;
  WorldBuffer& operator=(WorldBuffer&& other) noexcept;
  // Copies have the same layout and pixels, and intact padding and guards.
  WorldBuffer(const WorldBuffer& other);
  WorldBuffer& operator=(const WorldBuffer& other);

  std::int32_t Width() const { return def_.width; }
  std::int32_t Height() const { return def_.height; }
  bool Deep() const { return deep_; }
  std::int32_t RowBytes() const { return def_.rowbytes; }
  std::size_t PixelBytes() const { return deep_ ? sizeof(PF_Pixel16) : sizeof(PF_Pixel); }
  const WorldLayout& Layout() const { return layout_; }

  // The host's record of this world, initially with extent_hint (0, 0, width, height), pixel aspect
  // 1/1 and only the deep bit in world_flags. A copy of the record may be changed, but names the
  // same pixels only as long as data, rowbytes, width and height stay.
  const PF_LayerDef& Def() const { return def_; }
  void SetExtentHint(const PF_LRect& extent) { def_.extent_hint = extent; }
  // Replaces all flags. The deep bit must still match the depth of the pixels.
  void SetWorldFlags(PF_WorldFlags flags) { def_.world_flags = flags; }

  std::byte* Row(std::int32_t y);
  const std::byte* Row(std::int32_t y) const;

  // One pixel, without a bounds check. At8 is for 8-bit worlds, At16 for 16-bit ones.
  PF_Pixel& At8(std::int32_t x, std::int32_t y);
  const PF_Pixel& At8(std::int32_t x, std::int32_t y) const;
  PF_Pixel16& At16(std::int32_t x, std::int32_t y);
  const PF_Pixel16& At16(std::int32_t x, std::int32_t y) const;

  // Sets every byte of every pixel.
  void FillBytes(std::uint8_t value);
  // Refills the pixels with the layout's initial content.
  void FillFresh();
  // Seeded noise over the whole range of the depth: 0..255, or 0..32768.
  void FillNoise(std::uint64_t seed);

  // A sentence about the first overwritten guard or padding byte; empty if there is none.
  std::optional<std::string> Damage() const;
  // A hash of the pixels, excluding padding.
  std::uint64_t Checksum() const;

 private:
  void AllocateBetweenBands();
  void AllocateBetweenPages();
  void FillGuards();
  // Calls function(begin, end) for each guarded range, as offsets from watched_, until it returns
  // false.
  template <typename Function>
  void ForEachGuard(const Function& function) const;
  std::string DescribeDamage(std::size_t watchedOffset) const;
  void Swap(WorldBuffer& other) noexcept;

  WorldLayout layout_;
  bool deep_ = false;
  PF_LayerDef def_{};
  std::byte* pixels_ = nullptr;   // First pixel.
  std::byte* watched_ = nullptr;  // Guards, padding and pixels as one block.
  std::size_t watchedBytes_ = 0;
  void* allocation_ = nullptr;
};

// Lists the first `maxShown` differing pixels with position and both values, and small images
// whole. Empty if size, depth and all pixels agree. Padding is not compared.
std::string DescribeDifference(const WorldBuffer& expected, const WorldBuffer& actual,
                               int maxShown = 8);

// Whether size, depth and all pixels agree.
bool SamePixels(const WorldBuffer& a, const WorldBuffer& b);

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_WORLD_BUFFER_H_
