// The realistic blur with the lens mask as blur map: every pixel picks its own kernel.
#include "blur/realistic_mapped.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

#include "blur/highlight_map.h"
#include "blur/lane_sums.h"
#include "blur/tap_sums.h"
#include "host/buffer.h"
#include "host/pixel_pass.h"
#include "host/world.h"
#include "render/lens_mask.h"
#include "render/numeric.h"

namespace vitrell {
namespace {

// Below this total weight a pixel keeps its own colours.
constexpr double kSmallestTotal = 0.0001;

// Sums of pixels of one row from the one that the host has asked for onward. Used by the thread
// that has taken it.
struct LookAhead {
  std::int64_t x;  // Position of lane 0.
  LaneSums sums;
  bool isFilled;
  bool isTaken;
};

// Read-only while the host iterates, but for the sums looked ahead.
struct IrisBlurRefcon {
  const LaneEngine* engine;
  HighlightMap map;
  std::unique_ptr<IrisKernel[]> kernels;
  Buffer<std::uint16_t> kernelIndex;        // One per output pixel, row by row.
  std::unique_ptr<LookAhead[]> lookAheads;  // One per output row.
  std::int64_t width;                       // Of the output.
  std::int64_t height;
  std::int64_t left;  // Origin of the input.
  std::int64_t top;
};
static_assert(kMaxIrisRadius <= 65535);

// Kernel radii by mask value, evaluated through the host; neighbouring pixels often share a value.
class RadiusByMask {
 public:
  RadiusByMask(const PF_ANSICallbacks& maths, std::int32_t maxRadius)
      : maths_(maths), maxRadius_(maxRadius), radius_(Evaluate(0.0)) {}

  std::int32_t operator()(double mask) {
    if (mask != mask_) {
      mask_ = mask;
      radius_ = Evaluate(mask);
    }
    return radius_;
  }

 private:
  std::int32_t Evaluate(double mask) const {
    const std::int32_t radius = TruncateToInt32(maths_.pow(mask, 1.5) * maxRadius_ + 0.5);
    return std::clamp(radius, 0, maxRadius_);
  }

  const PF_ANSICallbacks& maths_;
  std::int32_t maxRadius_;
  double mask_ = 0.0;
  std::int32_t radius_;
};

bool ChooseKernels(const PF_ANSICallbacks& maths, std::int32_t maxRadius, IrisBlurRefcon* pass,
                   Buffer<std::uint8_t>* used) {
  const auto pixels = static_cast<std::size_t>(pass->width * pass->height);
  if (!pass->kernelIndex.Allocate(pixels) ||
      !used->AllocateZeroed(static_cast<std::size_t>(maxRadius) + 1)) {
    return false;
  }
  RadiusByMask radiusOf(maths, maxRadius);
  for (std::size_t i = 0; i < pixels; ++i) {
    const std::int32_t radius = radiusOf(i < g_LensMaskSize ? g_LensMask[i] : 0.0);
    pass->kernelIndex[i] = static_cast<std::uint16_t>(radius);
    (*used)[static_cast<std::size_t>(radius)] = 1;
  }
  return true;
}

bool BuildKernels(const IrisShape& shape, const KernelReach& reach,
                  const Buffer<std::uint8_t>& used, IrisBlurRefcon* pass) {
  pass->kernels.reset(new (std::nothrow) IrisKernel[used.size()]);
  if (pass->kernels == nullptr) {
    return false;
  }
  IrisKernelBuilder builder(shape, reach);
  auto largest = static_cast<std::int32_t>(used.size()) - 1;
  while (used[static_cast<std::size_t>(largest)] == 0 && largest > 0) {
    --largest;
  }
  if (!builder.ShareTo(largest)) {
    return false;
  }
  for (std::size_t radius = 0; radius < used.size(); ++radius) {
    if (used[radius] != 0 &&
        !builder.Build(static_cast<std::int32_t>(radius), TapChoice::kAboveThreshold,
                       &pass->kernels[radius], nullptr)) {
      return false;
    }
  }
  return true;
}

// Runs of equal kernels among the pixels from (x, y) to the end of the block or of the row.
int GroupLanes(const IrisBlurRefcon& pass, std::int64_t x, std::int64_t y, LaneGroup* groups) {
  const std::uint16_t* const index =
      pass.kernelIndex.data() + static_cast<std::size_t>(y * pass.width + x);
  const auto lanes = static_cast<int>(std::min<std::int64_t>(pass.engine->lanes, pass.width - x));
  int count = 0;
  for (int lane = 0; lane < lanes; ++lane) {
    if (lane == 0 || index[lane] != index[lane - 1]) {
      groups[count++] = {&pass.kernels[index[lane]], lane, lane};
    }
    groups[count - 1].endLane = lane + 1;
  }
  return count;
}

void SumAhead(const IrisBlurRefcon& pass, std::int64_t x, std::int64_t y, LookAhead* ahead) {
  const HighlightMap& map = pass.map;
  const std::int64_t row = y - pass.top;
  const std::int64_t column = x - pass.left;
  const LaneView view = {map.origin(), row * map.rowStride() + column, map.planeStride(), 1,
                         map.rowStride()};
  const LaneWindow window = {1 - pass.engine->lanes - column, map.width() - 1 - column, -row,
                             map.height() - 1 - row};
  LaneGroup groups[kMaxLanes];
  const int groupCount = GroupLanes(pass, x, y, groups);
  if (groupCount == 1) {
    pass.engine->sumKernel(view, window, *groups[0].kernel, &ahead->sums);
  } else {
    pass.engine->sumMixed(view, window, groups, groupCount, &ahead->sums);
  }
  ahead->x = x;
  ahead->isFilled = true;
}

// The compilers' atomic builtins stand in for std::atomic_ref, which older standard libraries of
// macOS do not have.
TapSums SumsAt(const IrisBlurRefcon& pass, std::int64_t x, std::int64_t y) {
  if (x < 0 || x >= pass.width || y < 0 || y >= pass.height) {
    return {};
  }
  LookAhead& ahead = pass.lookAheads[static_cast<std::size_t>(y)];
  if (__atomic_exchange_n(&ahead.isTaken, true, __ATOMIC_ACQUIRE)) {
    LookAhead own = {};  // Another thread is at a pixel of the same row.
    SumAhead(pass, x, y, &own);
    return own.sums.Lane(0);
  }
  if (!ahead.isFilled || x < ahead.x || x >= ahead.x + pass.engine->lanes) {
    SumAhead(pass, x, y, &ahead);
  }
  const TapSums sums = ahead.sums.Lane(static_cast<int>(x - ahead.x));
  __atomic_store_n(&ahead.isTaken, false, __ATOMIC_RELEASE);
  return sums;
}

template <typename Pixel, typename Channel = ChannelOf<Pixel>>
PF_Err IrisBlur(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out) {
  const auto& pass = *static_cast<const IrisBlurRefcon*>(refcon);
  const TapSums sums = SumsAt(pass, x, y);
  Pixel result = *in;
  if (sums.weight >= kSmallestTotal) {
    StoreColours(sums, &result);
  }
  *out = result;
  return PF_Err_NONE;
}

}  // namespace

PF_Err BlurByMask(const IO_Params& io, const IrisShape& shape, std::int32_t maxRadius,
                  const LaneEngine& engine) {
  IrisBlurRefcon pass;
  pass.engine = &engine;
  pass.width = std::max(io.dst->width, 0);
  pass.height = std::max(io.dst->height, 0);
  pass.left = io.src->extent_hint.left;
  pass.top = io.src->extent_hint.top;
  pass.lookAheads.reset(new (std::nothrow) LookAhead[static_cast<std::size_t>(pass.height)]());
  Buffer<std::uint8_t> used;
  if (pass.lookAheads == nullptr ||
      !ChooseKernels(io.in_data->utils->ansi, maxRadius, &pass, &used) ||
      !BuildKernels(shape, ReachBetween(*io.src, *io.dst), used, &pass) ||
      !pass.map.Build(io.in_data, *io.src, PlaneOrder::kColumnsContiguous, true)) {
    return PF_Err_OUT_OF_MEMORY;
  }
  AEGP_SuiteHandler suites(io.in_data->pica_basicP);
  return RunPixelPass(suites, io.in_data, io.src, io.dst, ExtentLines(*io.dst),
                      {IrisBlur<PF_Pixel>, IrisBlur<PF_Pixel16>}, &pass);
}

}  // namespace vitrell
