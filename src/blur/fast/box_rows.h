// Rows of box-blurred pixels, at a cost independent of the radius.
#ifndef VITRELL_BLUR_FAST_BOX_ROWS_H_
#define VITRELL_BLUR_FAST_BOX_ROWS_H_

#include <cstddef>
#include <cstdint>

#include "base/buffer.h"
#include "blur/fast/box_lines.h"
#include "blur/fast/box_means.h"
#include "blur/fast/box_pixel.h"
#include "blur/fast/box_window.h"
#include "host/host_api.h"

namespace vitrell {

// Rows that a window goes down from where its sum was put together.
inline constexpr std::int32_t kBoxStripRows = 16;

// Box means of a world along one axis. The memory is reused from pass to pass.
//
// Windows slide. Down columns those of the first row of a strip follow from prefix sums for every
// eighth row, which are computed on the render thread when the pass is prepared, and at most eight
// rows. Both axes reflect positions beyond the edges as RecomputePosition does, and give the same
// integers as adding up every tap.
template <typename Pixel>
class BoxRows {
 public:
  // Prepares a pass over src, whose pixels must not change until the pass ends. Nothing is prepared
  // for a negative radius, whose windows have no taps. False if memory is short.
  [[nodiscard]] bool Prepare(BoxAxis axis, const PF_LayerDef& src, std::int32_t radiusPx);

  // Writes the rows from the first up to, but not including, endRow, which are `pitch` pixels
  // apart; at most kBoxStripRows. Their alpha is undefined. Safe on any thread, in any order.
  void FillRows(std::int32_t firstRow, std::int32_t endRow, Pixel* out, std::ptrdiff_t pitch) const;

  // The source of the pass; without pixels if nothing was prepared.
  const PF_LayerDef& source() const { return src_; }

 private:
  [[nodiscard]] bool PrepareRowSteps();
  template <typename Sums>
  [[nodiscard]] bool PrepareColumnSums(Buffer<Sums>* buffer);
  template <typename Sums>
  void Fill(const Sums* stored, std::int32_t firstRow, std::int32_t endRow, Pixel* out,
            std::ptrdiff_t pitch) const;
  template <typename Sums>
  void FillAlongRow(std::int32_t row, Pixel* out) const;
  template <typename Sums>
  void SumWindows(const Sums* stored, const BoxWindow& window, std::int32_t column,
                  std::int32_t count, Sums* sums) const;
  template <typename Sums>
  void FillDownColumns(const Sums* stored, std::int32_t firstRow, std::int32_t endRow, Pixel* out,
                       std::ptrdiff_t pitch) const;
  template <typename Sums>
  const BoxEngine<Pixel, Sums>& Engine() const;
  const Pixel* SourceRow(std::int64_t row) const;

  BoxAxis axis_ = BoxAxis::kRows;
  PF_LayerDef src_ = {};
  std::int32_t radiusPx_ = 0;
  BoxScale scale_{0};
  const BoxEngine<Pixel>* engine_ = &BestEngine<BoxEngine<Pixel>>();
  Buffer<std::uint32_t> entering_;  // Along rows: the reflected column that enters at each step,
  Buffer<std::uint32_t> leaving_;   // and the one that leaves.
  Buffer<U32Lanes> sums_;  // Down columns: sums of the rows above rows 0, 8, 16, ..., and of all.
  Buffer<WideSums> wideSums_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_BOX_ROWS_H_
