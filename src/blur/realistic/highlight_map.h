// The realistic blur's source: the highlight weight of each input pixel and its colours, as planes
// of floats from which neighbouring output pixels can be summed in vector lanes.
#ifndef VITRELL_BLUR_REALISTIC_HIGHLIGHT_MAP_H_
#define VITRELL_BLUR_REALISTIC_HIGHLIGHT_MAP_H_

#include <cstddef>
#include <cstdint>

#include "base/buffer.h"
#include "host/host_api.h"

namespace vitrell {

// The memory order of a map: neighbours within a row are contiguous (row-major), or neighbours
// within a column (column-major).
enum class PlaneOrder { kRowMajor, kColumnMajor };

// What the map is used for. By mask, a transparent pixel has the weight 0 even where its weight
// would come from another pixel (see Fill), and there are planes of products for taps of weight 1.
enum class MapUse { kUniform, kByMask };

// Planes of floats: highlight weight, red, green and blue; by mask also the products of the weight
// with each of the three, rounded to float. A line is a row of a row-major map or a column of a
// column-major one; its planes follow one another, planeStride() apart. Each has kLinePadding zeros
// before and after its pixels, so that up to kLinePadding + 1 neighbours may be read from any pixel
// of a line and from anywhere in the padding before it. Positions are relative to the memory of the
// input world.
//
// Read-only once built; safe on any number of threads.
class HighlightMap {
 public:
  static constexpr std::int64_t kLinePadding = 64;

  // False if memory is short. A world without pixels gives an empty map.
  [[nodiscard]] bool Build(const PF_InData* inData, const PF_LayerDef& input, PlaneOrder order,
                           MapUse use);

  std::int64_t width() const { return width_; }
  std::int64_t height() const { return height_; }
  std::int64_t columnStride() const { return columnStride_; }
  std::int64_t rowStride() const { return rowStride_; }
  std::int64_t planeStride() const { return planeStride_; }

  // Address of the highlight weight of pixel (0, 0); null if there are no pixels.
  const float* origin() const { return origin_; }

 private:
  template <typename Pixel>
  void Fill(const PF_InData* inData, const PF_LayerDef& input, std::int64_t rowsAtATime,
            MapUse use);

  Buffer<float> values_;
  float* origin_ = nullptr;
  std::int64_t width_ = 0;
  std::int64_t height_ = 0;
  std::int64_t columnStride_ = 0;
  std::int64_t rowStride_ = 0;
  std::int64_t planeStride_ = 0;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_HIGHLIGHT_MAP_H_
