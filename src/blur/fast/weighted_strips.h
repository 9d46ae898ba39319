// Box means weighted by the lens mask, at a cost that hardly depends on the radius.
#ifndef VITRELL_BLUR_FAST_WEIGHTED_STRIPS_H_
#define VITRELL_BLUR_FAST_WEIGHTED_STRIPS_H_

#include <cstdint>

#include "base/numeric.h"
#include "blur/fast/box_pixel.h"
#include "blur/fast/weighted_lines.h"
#include "host/host_api.h"
#include "lens/lens_mask.h"
#include "pass/lazy_strips.h"
#include "pass/workspaces.h"

namespace vitrell {

// Memory reused by the passes of one blur.
template <typename Pixel>
struct WeightedMemory {
  StripMemory<Pixel> strips;
  Workspaces<WeightedSums> sums;
};

// The stage of a StripPass for the mask's soft band, in one pass along one axis. Strips of rows or
// columns are computed from prefix sums; pixels whose rounding these cannot decide, by the defining
// loop. Positions are relative to the mask's rectangle.
template <BoxAxis kAxis, typename PixelType>
class WeightedStrips {
 public:
  using Pixel = PixelType;
  static constexpr bool kIsRows = kAxis == BoxAxis::kRows;
  static constexpr std::int32_t kStripSize = 16;
  static constexpr StripLines kStripLines = kIsRows ? StripLines::kRows : StripLines::kColumns;

  // The worlds of the pass must not change until it ends.
  WeightedStrips(const BoxBlurRefcon& box, const LensMaskView& mask) : box_(box), mask_(mask) {}

  // False if memory is short. There are no strips for a negative radius, nor if the mask's
  // rectangle is not wholly within the worlds or is longer than kMaxWeightedTaps.
  [[nodiscard]] bool Prepare(WeightedMemory<Pixel>* memory);

  // The size of the strips' image; 0 if there are none.
  std::int32_t width() const { return width_; }
  std::int32_t height() const { return height_; }

  std::int32_t ColumnOf(std::int32_t x) const { return WrappingSubtract(x, rect_.left); }
  std::int32_t RowOf(std::int32_t y) const { return WrappingSubtract(y, rect_.top); }

  // Writes the pixels of some lines where the mask is strictly between 0 and 1; their alpha is
  // undefined. False if all workspaces are on loan to other threads.
  bool FillStrip(std::int32_t firstLine, std::int32_t endLine, Pixel* out);

  // For any pixel where the mask is above 0.
  void StoreOnePixel(std::int32_t x, std::int32_t y, const Pixel& in, Pixel* out) const {
    StoreWeightedBox<kAxis>(box_, mask_, x, y, in, out);
  }

  static void Publish(const Pixel& stored, const Pixel& in, Pixel* out) {
    PublishColors(stored, in, out);
  }

 private:
  // Neighbouring columns share cache lines and are summed together; rows share none.
  static constexpr std::int32_t kLinesAtOnce = kIsRows ? 1 : kStripSize;

  // Some neighbouring lines, between two positions along them.
  struct Stretch {
    std::int32_t firstLine;
    std::int32_t endLine;
    std::int32_t begin;
    std::int32_t end;
  };

  WeightedLines LinesOf(const Stretch& stretch) const;
  void FillLines(std::int32_t firstLine, std::int32_t endLine, WeightedSums* sums,
                 Pixel* out) const;
  void FillStretch(const Stretch& stretch, WeightedSums* sums, Pixel* out) const;
  void StoreByDefinition(std::int32_t line, std::int32_t position, Pixel* out) const;

  const BoxBlurRefcon& box_;
  LensMaskView mask_;
  const double* weights_ = nullptr;  // The mask's values over the rectangle.
  PF_LRect rect_ = {};
  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
  const WeightedEngine<Pixel>* engine_ = nullptr;
  Workspaces<WeightedSums>* sums_ = nullptr;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_WEIGHTED_STRIPS_H_
