// A world that owns its pixels and notices writes beside them.
#ifndef VITRELL_HEADLESS_WORLD_BUFFER_H_
#define VITRELL_HEADLESS_WORLD_BUFFER_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "host/host_api.h"

namespace vitrell::headless {

// Where the picture touches a page whose access ends the process.
enum class GuardPages {
  kNone,     // Guard bands only.
  kAtEnd,    // The last pixel ends where a protected page begins.
  kAtStart,  // The first pixel begins where a protected page ends.
};

// What fresh pixels hold. Poison makes every read of an unwritten pixel visible; kUnset leaves
// whatever the memory holds, for measurements.
enum class FreshPixels { kPoison, kZero, kUnset };

struct WorldLayout {
  // Bytes between the end of a row's pixels and the next row. Even for deep worlds.
  std::int32_t rowPadding = 0;
  // Bytes that the first pixel lies behind a 64-byte boundary; odd bases are legal for 8-bit
  // worlds. Not used together with guard pages.
  std::int32_t baseOffset = 0;
  GuardPages guardPages = GuardPages::kNone;
  FreshPixels fresh = FreshPixels::kPoison;

  bool operator==(const WorldLayout&) const = default;
};

// A picture of straight ARGB pixels, 8-bit (0..255) or deep (0..32768), with guard bands before
// and after it. Guard bands and row padding hold a pattern that Damage() verifies.
class WorldBuffer {
 public:
  // Sizes are 0..30000. Throws HostError for other sizes, for an odd layout of a deep world and
  // when memory runs out.
  WorldBuffer(std::int32_t width, std::int32_t height, bool deep, const WorldLayout& layout = {});
  ~WorldBuffer();
  WorldBuffer(WorldBuffer&& other) noexcept;
  WorldBuffer& operator=(WorldBuffer&& other) noexcept;
  // Copies have the same layout and pixels; padding and guards are fresh.
  WorldBuffer(const WorldBuffer& other);
  WorldBuffer& operator=(const WorldBuffer& other);

  std::int32_t Width() const { return def_.width; }
  std::int32_t Height() const { return def_.height; }
  bool Deep() const { return deep_; }
  std::int32_t RowBytes() const { return def_.rowbytes; }
  std::size_t PixelBytes() const { return deep_ ? sizeof(PF_Pixel16) : sizeof(PF_Pixel); }
  const WorldLayout& Layout() const { return layout_; }

  // The host's record of this world. extent_hint starts as (0, 0, width, height), the pixel aspect
  // as 1/1, world_flags as the deep bit alone where it applies. Copies of the record may be
  // changed, but name the same pixels only while data, rowbytes, width and height stay.
  const PF_LayerDef& Def() const { return def_; }
  void SetExtentHint(const PF_LRect& extent) { def_.extent_hint = extent; }
  // Replaces all flags. The deep bit must go on telling the depth of the pixels.
  void SetWorldFlags(PF_WorldFlags flags) { def_.world_flags = flags; }

  std::byte* Row(std::int32_t y);
  const std::byte* Row(std::int32_t y) const;

  // One pixel, without bounds check. At8 is for 8-bit worlds, At16 for deep ones.
  PF_Pixel& At8(std::int32_t x, std::int32_t y);
  const PF_Pixel& At8(std::int32_t x, std::int32_t y) const;
  PF_Pixel16& At16(std::int32_t x, std::int32_t y);
  const PF_Pixel16& At16(std::int32_t x, std::int32_t y) const;

  // Sets every byte of every pixel.
  void FillBytes(std::uint8_t value);
  // As the layout has it for fresh pixels.
  void FillFresh();
  // Seeded noise over the whole range of the depth: 0..255, or 0..32768.
  void FillNoise(std::uint64_t seed);

  // A sentence about the first guard or padding byte that was overwritten; nothing if all is well.
  std::optional<std::string> Damage() const;
  // Hash of the pixels, without padding.
  std::uint64_t Checksum() const;

 private:
  void AllocateBetweenBands();
  void AllocateBetweenPages();
  void FillGuards();
  // Calls function(begin, end) for each guarded range, as offsets into the watched piece, until it
  // returns false.
  template <typename Function>
  void ForEachGuard(const Function& function) const;
  std::string DescribeDamage(std::size_t watchedOffset) const;
  void Swap(WorldBuffer& other) noexcept;

  WorldLayout layout_;
  bool deep_ = false;
  PF_LayerDef def_{};
  std::byte* pixels_ = nullptr;   // First pixel.
  std::byte* watched_ = nullptr;  // Guards, padding and pixels in one accessible piece.
  std::size_t watchedBytes_ = 0;
  void* allocation_ = nullptr;
  std::size_t allocationBytes_ = 0;
};

// The first `maxShown` differing pixels with position and both values, small pictures whole;
// empty when size, depth and all pixels agree. Padding is not compared.
std::string DescribeDifference(const WorldBuffer& expected, const WorldBuffer& actual,
                               int maxShown = 8);

// Whether size, depth and all pixels agree.
bool SamePixels(const WorldBuffer& a, const WorldBuffer& b);

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_WORLD_BUFFER_H_
