// Rows of box-blurred pixels, at a cost that does not depend on the radius.
#ifndef VITRELL_BLUR_FAST_BOX_ROWS_H_
#define VITRELL_BLUR_FAST_BOX_ROWS_H_

#include <cstdint>

#include "base/buffer.h"
#include "blur/fast/box_means.h"
#include "blur/fast/box_pixel.h"
#include "blur/fast/box_window.h"
#include "host/host_api.h"

namespace vitrell {

// Box means of one world along one axis, one row at a time. The memory is kept from pass to pass.
//
// Along rows the window slides. Down columns the sums above every eighth row are formed on the
// render thread when the pass is prepared; a row's windows follow from the two nearest ones and at
// most eight rows. Both fold positions beyond the edges as RecomputePosition does, and both give
// the same integers as adding up every tap.
template <typename Pixel>
class BoxRows {
 public:
  // Prepares a pass over src, whose pixels must not change until the pass ends. A negative radius
  // has windows without taps, which are not worked out here. False when there is no memory.
  [[nodiscard]] bool Prepare(BoxAxis axis, const PF_LayerDef& src, std::int32_t radiusPx);

  // Writes the blurred pixels of one row of the source, alpha unblurred. Any thread, any order.
  void FillRow(std::int32_t row, Pixel* out) const;

  // The source of the pass; without pixels when there is nothing to blur.
  const PF_LayerDef& source() const { return src_; }

 private:
  template <typename Means>
  [[nodiscard]] bool PrepareColumnSums();
  template <typename Means>
  void FillAlongRow(std::int32_t row, Pixel* out) const;
  template <typename Means>
  void FillDownColumns(std::int32_t row, Pixel* out) const;
  template <typename Sums>
  const Sums* StoredSums() const;
  const Pixel* SourceRow(std::int64_t row) const;

  BoxAxis axis_ = BoxAxis::kRows;
  PF_LayerDef src_ = {};
  std::int32_t radiusPx_ = 0;
  Buffer<std::uint32_t> entering_;  // Along rows: the folded column that enters at each step,
  Buffer<std::uint32_t> leaving_;   // and the one that leaves.
  Buffer<U32Lanes> sums_;           // Down columns: sums above rows 0, 8, 16, ..., and of all.
  Buffer<WideSums> wideSums_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_BOX_ROWS_H_
