// The directional blur's result, worked out in vector lanes a strip of rows at a time.
#ifndef VITRELL_BLUR_DIRECTIONAL_LINE_STRIPS_H_
#define VITRELL_BLUR_DIRECTIONAL_LINE_STRIPS_H_

#include <cstddef>
#include <cstdint>

#include "base/buffer.h"
#include "blur/directional/color_planes.h"
#include "blur/directional/line_sums.h"
#include "blur/directional/line_taps.h"
#include "host/host_api.h"
#include "lens/lens_mask.h"

namespace vitrell {

// The tables of one pass over one source, and its rows. Rows of a strip are worked out block by
// block, so that what the taps of a block read stays in the processor's cache from row to row.
template <typename Pixel>
class LineStrips {
 public:
  // Prepares a pass over src, whose pixels must not change until the pass ends. Answers
  // PF_Err_OUT_OF_MEMORY when there is no memory. There are no strips for a source without pixels
  // or with an origin other than (0, 0), or for weights that are negative or no numbers.
  [[nodiscard]] PF_Err Prepare(const PF_LayerDef& src, const LensMaskView& mask,
                               const LineTaps& line);

  bool HasStrips() const { return engine_ != nullptr; }

  // Writes the blurred pixels of at most kStripRows rows of the source, one row behind the other.
  void FillStrip(std::int32_t firstRow, std::int32_t endRow, Pixel* out) const;

  static constexpr std::int32_t kStripRows = 16;

 private:
  // The sums of one block: as many columns as there are lanes, and the rows of a strip.
  struct Block {
    bool isInLens[kStripRows];  // Rows without a pixel in the lens have no sums.
    alignas(64) float colors[kColorCount][kStripRows][kMaxLineLanes];
    alignas(64) double weights[kStripRows][kMaxLineLanes];
  };

  [[nodiscard]] bool PrepareTaps(const LineTaps& line, std::int64_t firstTapRow);
  [[nodiscard]] bool PrepareRows(std::int64_t firstTapRow, std::int64_t endTapRow);
  void SumBlock(std::int32_t firstRow, std::int32_t endRow, std::int32_t column,
                Block* block) const;
  template <typename SumFunction, typename Value>
  void SumRows(SumFunction sum, const LineView& firstView, std::int32_t rowCount, Value zero,
               const Block& block, Value (*sums)[kMaxLineLanes]) const;
  void StoreRow(std::int32_t row, std::int32_t column, const Block& block, std::int32_t blockRow,
                Pixel* out) const;
  bool IsAnyInLens(std::int32_t row, std::int32_t column) const;

  PF_LayerDef src_ = {};
  LensMaskView mask_{src_};
  const LineEngine* engine_ = nullptr;
  bool isSplit_ = false;  // Every tap has a split weight that is exact for this depth.
  double weightSum_ = 0;  // Of a line without transparent pixels.
  ColorPlanes planes_;
  Buffer<LineSumTap> taps_;
  std::size_t tapCount_ = 0;
  Buffer<std::ptrdiff_t> rows_;  // Where the row of each position begins in a plane, mirrored.
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_LINE_STRIPS_H_
