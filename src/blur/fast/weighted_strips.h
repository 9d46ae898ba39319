// Box means weighted by the lens mask, at a cost that hardly depends on the radius.
#ifndef VITRELL_BLUR_FAST_WEIGHTED_STRIPS_H_
#define VITRELL_BLUR_FAST_WEIGHTED_STRIPS_H_

#include <cstddef>
#include <cstdint>

#include "base/buffer.h"
#include "blur/fast/box_rows.h"
#include "blur/fast/weighted_lines.h"
#include "host/host_api.h"
#include "pass/lazy_strips.h"

namespace vitrell {

// What a pass weighs and blends.
struct WeightedPass {
  BoxAxis axis;
  std::int32_t radiusPx;
  const PF_LayerDef* src;
  const PF_LayerDef* unblurred;  // Down columns faint mask values blend with it.
  PF_LRect rect;                 // The mask's rectangle: taps outside it weigh nothing.
};

// The defining loop over the taps of one pixel at layer position (x, y); context is the caller's.
template <typename Pixel>
using SumTapsFunction = void (*)(const void* context, std::int32_t x, std::int32_t y, Pixel* out);

// One pass along one axis: strips of rows or of columns, by running sums; pixels whose roundings
// need it by the defining loop.
template <typename Pixel>
class WeightedStrips {
 public:
  // Prepares a pass over worlds whose pixels must not change until it ends. False when there is no
  // memory. There are no strips for a negative radius, nor where the mask's rectangle is not wholly
  // within the worlds or longer than kMaxWeightedTaps. The memory is kept from pass to pass.
  [[nodiscard]] bool Prepare(const WeightedPass& pass);

  // The blurred pixel at layer position (x, y), where the mask lies between 0 and 1, when its strip
  // has been worked out already; else null. Its alpha means nothing.
  const Pixel* ReadyAt(std::int32_t x, std::int32_t y) const {
    return strips_.ReadyPixel(WrappingSubtract(x, pass_.rect.left),
                              WrappingSubtract(y, pass_.rect.top));
  }

  // The same, working the strip out if nobody has; null without strips, outside the rectangle and
  // while another thread is at it. Any thread, any order.
  const Pixel* At(std::int32_t x, std::int32_t y, SumTapsFunction<Pixel> sumTaps,
                  const void* context);

 private:
  static constexpr std::int32_t kStripSize = 16;

  // Threads that can work out strips at the same time; any more sum their taps one by one.
  static constexpr std::uint32_t kWorkspaces = 16;

  bool IsRows() const { return pass_.axis == BoxAxis::kRows; }
  // Columns share the cache lines of their pixels; rows would share nothing.
  std::int32_t LinesAtOnce() const { return IsRows() ? 1 : kStripSize; }
  WeightedLines MakeLines(std::int32_t first, std::int32_t end) const;
  void FillLines(const WeightedLines& lines, WeightedSums* sums, SumTapsFunction<Pixel> sumTaps,
                 const void* context, Pixel* out) const;
  void FillStretch(const WeightedLines& lines, WeightedSums* sums, SumTapsFunction<Pixel> sumTaps,
                   const void* context, Pixel* out) const;

  // A workspace for the calling thread alone, or kWorkspaces.
  std::uint32_t TakeWorkspace();
  void ReturnWorkspace(std::uint32_t workspace);
  WeightedSums* SumsOf(std::uint32_t workspace);

  WeightedPass pass_ = {};
  const WeightedEngine<Pixel>* engine_ = nullptr;
  std::int32_t width_ = 0;  // Of the mask's rectangle; 0 without strips.
  std::int32_t height_ = 0;
  LazyStrips<Pixel, kStripSize> strips_;
  Buffer<WeightedSums> workspaces_;
  std::size_t workspaceSize_ = 0;
  std::uint32_t taken_ = 0;  // A bit for each workspace in use.
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_WEIGHTED_STRIPS_H_
