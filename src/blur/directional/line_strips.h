// The directional blur in strips of rows, summed in vector lanes.
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

// The tables of one pass over one source, from which strips of rows are computed. A strip is
// computed in blocks of columns, so that the values that a block's taps read stay in the cache from
// row to row.
template <typename Pixel>
class LineStrips {
 public:
  // Prepares a pass over src, whose pixels must not change until the pass ends. Returns
  // PF_Err_OUT_OF_MEMORY if memory is short. There are no strips for a source without pixels or
  // with an origin other than (0, 0), nor for weights that are negative or not finite.
  [[nodiscard]] PF_Err Prepare(const PF_LayerDef& src, const LensMaskView& mask,
                               const LineTaps& line);

  bool HasStrips() const { return engine_ != nullptr; }

  // Writes the blurred pixels of these rows of the source, row-major.
  void FillStrip(std::int32_t firstRow, std::int32_t endRow, Pixel* out) const;

 private:
  static constexpr std::int32_t kBlockRows = 16;

  // The sums of one block: these rows, and as many columns as there are lanes.
  struct Block {
    bool isInLens[kBlockRows];  // Rows without a pixel in the lens are not summed.
    alignas(64) float colors[kColorCount][kBlockRows][kMaxLineLanes];
    alignas(64) double weights[kBlockRows][kMaxLineLanes];
  };

  [[nodiscard]] bool PrepareTaps(const LineTaps& line, std::int64_t firstTapRow);
  [[nodiscard]] bool PrepareRows(std::int64_t firstTapRow, std::int64_t endTapRow);
  void FillBlocks(std::int32_t firstRow, std::int32_t endRow, Pixel* out) const;
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
  bool isSplit_ = false;  // All taps have exact split weights for this depth.
  double weightSum_ = 0;  // For lines without transparent pixels.
  ColorPlanes planes_;
  Buffer<LineSumTap> taps_;
  std::size_t tapCount_ = 0;
  Buffer<std::ptrdiff_t> rows_;  // Offset in a plane of each reflected row.
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_LINE_STRIPS_H_
