// Rows of box-blurred pixels, at a cost independent of the radius.
#ifndef VITRELL_BLUR_FAST_BOX_ROWS_H_
#define VITRELL_BLUR_FAST_BOX_ROWS_H_

#include <cstdint>

#include "base/buffer.h"
#include "blur/fast/box_means.h"
#include "blur/fast/box_pixel.h"
#include "blur/fast/box_window.h"
#include "host/host_api.h"

namespace vitrell {

// Box means of a world along one axis, one row at a time. The memory is reused from pass to pass.
//
// Along rows the window slides. Down columns, prefix sums for every eighth row are computed on the
// render thread when the pass is prepared; the windows of a row follow from the nearest stored sums
// at both ends and at most eight rows. Both reflect positions beyond the edges as RecomputePosition
// does, and both give the same integers as adding up every tap.
template <typename Pixel>
class BoxRows {
 public:
  // Prepares a pass over src, whose pixels must not change until the pass ends. Nothing is prepared
  // for a negative radius, whose windows have no taps. False if memory is short.
  [[nodiscard]] bool Prepare(BoxAxis axis, const PF_LayerDef& src, std::int32_t radiusPx);

  // Writes one row of blurred colours with the source's alpha. Safe on any thread, in any order.
  void FillRow(std::int32_t row, Pixel* out) const;

  // The source of the pass; without pixels if nothing was prepared.
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
  Buffer<std::uint32_t> entering_;  // Along rows: the reflected column that enters at each step,
  Buffer<std::uint32_t> leaving_;   // and the one that leaves.
  Buffer<U32Lanes> sums_;  // Down columns: sums of the rows above rows 0, 8, 16, ..., and of all.
  Buffer<WideSums> wideSums_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_BOX_ROWS_H_
