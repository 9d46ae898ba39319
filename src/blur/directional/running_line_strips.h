// The directional blur of 8-bit pixels along rows, columns and diagonals in strips of rows, from
// running sums.
#ifndef VITRELL_BLUR_DIRECTIONAL_RUNNING_LINE_STRIPS_H_
#define VITRELL_BLUR_DIRECTIONAL_RUNNING_LINE_STRIPS_H_

#include <cstdint>

#include "blur/directional/line_taps.h"
#include "blur/directional/mirrored_pixels.h"
#include "blur/directional/ordered_averages.h"
#include "blur/directional/running_line.h"
#include "blur/directional/running_line_sums.h"
#include "host/host_api.h"
#include "lens/lens_mask.h"

namespace vitrell {

// The tables of one pass over one source. The cost of a pixel does not depend on the length of the
// line, but for the first row of a strip and for those pixels, about 1 in 100, whose taps have to
// be summed in order.
class RunningLineStrips {
 public:
  // Prepares a pass over src, whose pixels must not change until the pass ends. Returns
  // PF_Err_OUT_OF_MEMORY if memory is short. There are no strips for other lines, for a source
  // without pixels or with an origin other than (0, 0), nor for one that is much narrower than the
  // line reaches.
  [[nodiscard]] PF_Err Prepare(const PF_LayerDef& src, const LensMaskView& mask,
                               const LineTaps& line,
                               const RunningEngine& engine = BestEngine<RunningEngine>());

  bool HasStrips() const { return engine_ != nullptr; }

  // Writes the blurred pixels of up to kStripRows rows of the source, row-major.
  void FillStrip(std::int32_t firstRow, std::int32_t endRow, PF_Pixel* out) const;

  static constexpr std::int32_t kStripRows = 32;

 private:
  class UndecidedGroups;

  // Columns or rows from first up to, but not including, end; none if first >= end.
  struct Range {
    std::int32_t first;
    std::int32_t end;
  };

  void FillRow(std::int32_t row, PF_Pixel* outRow, UndecidedGroups* undecided) const;
  void FillBlock(const Range& rows, std::int32_t column, PF_Pixel* out,
                 UndecidedGroups* undecided) const;
  void CopyBlock(const Range& rows, std::int32_t column, PF_Pixel* out) const;
  void StoreBlock(std::int32_t row, std::int32_t column, const std::int32_t* sums, PF_Pixel* outRow,
                  UndecidedGroups* undecided) const;
  void Store(std::int32_t row, const Range& columns, const PF_Pixel* averages,
             PF_Pixel* outRow) const;
  std::uint64_t AverageUniform(std::int32_t row, std::int32_t column, std::uint64_t unsure,
                               PF_Pixel* averages) const;
  LinePixels LineAt(std::int32_t row, std::int32_t column) const;
  Range Inside(std::int32_t column, std::int32_t count) const;
  Range InLens(std::int32_t row, const Range& columns) const;
  bool IsAnyInLens(const Range& rows, std::int32_t column) const;

  PF_LayerDef src_ = {};
  LensMaskView mask_{src_};
  MaskOnes ones_;
  const RunningEngine* engine_ = nullptr;
  RunningLine line_;
  MirroredPixels pixels_;
  OrderedAverages averages_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_RUNNING_LINE_STRIPS_H_
