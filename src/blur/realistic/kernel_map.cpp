// The realistic blur by map: the kernel of each pixel, and the sums over it.
#include "blur/realistic/kernel_map.h"

#include <algorithm>
#include <cstddef>
#include <new>

#include "base/numeric.h"
#include "lens/lens_mask.h"

namespace vitrell {
namespace {

static_assert(kMaxIrisRadius <= 65535);

// Kernel radii by mask value, computed by the host's maths; the last one is cached, since
// neighbouring pixels often share a value.
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

}  // namespace

bool KernelMap::ChooseKernels(Buffer<std::uint8_t>* used) {
  const auto pixels = static_cast<std::size_t>(width_ * height_);
  if (!kernelIndex_.Allocate(pixels) ||
      !used->AllocateZeroed(static_cast<std::size_t>(refcon_.maxRadius) + 1)) {
    return false;
  }
  RadiusByMask radiusOf(refcon_.io->in_data->utils->ansi, refcon_.maxRadius);
  const LensMaskValues mask;
  for (std::size_t i = 0; i < pixels; ++i) {
    const std::int32_t radius = radiusOf(mask.At(i));
    kernelIndex_[i] = static_cast<std::uint16_t>(radius);
    (*used)[static_cast<std::size_t>(radius)] = 1;
  }
  return true;
}

bool KernelMap::BuildKernels(const IrisShape& shape, const Buffer<std::uint8_t>& used) {
  kernels_.reset(new (std::nothrow) IrisKernel[used.size()]);
  if (kernels_ == nullptr) {
    return false;
  }
  IrisKernelBuilder builder(shape, ReachBetween(*refcon_.io->src, *refcon_.io->dst));
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
                       &kernels_[radius], nullptr)) {
      return false;
    }
  }
  refcon_.kernels = kernels_.get();
  return true;
}

bool KernelMap::Build(const IO_Params& io, const IrisShape& shape, std::int32_t maxRadius) {
  width_ = std::max(io.dst->width, 0);
  height_ = std::max(io.dst->height, 0);
  left_ = io.src->extent_hint.left;
  top_ = io.src->extent_hint.top;
  refcon_ = {.kernels = nullptr,
             .realisticUseLensAsBlurMap = 1,
             .io = &io,
             .highlightMap = &map_,
             .maxRadius = maxRadius};
  Buffer<std::uint8_t> used;
  return ChooseKernels(&used) && BuildKernels(shape, used) &&
         map_.Build(io.in_data, *io.src, PlaneOrder::kRowMajor, MapUse::kByMask);
}

// Finds runs of equal kernels among the pixels from (x, y) to the end of the block or of the row.
int KernelMap::GroupLanes(std::int64_t x, std::int64_t y, LaneGroup* groups) const {
  const std::uint16_t* const index = kernelIndex_.data() + static_cast<std::size_t>(y * width_ + x);
  const auto lanes = static_cast<int>(std::min<std::int64_t>(engine_.rowLanes, width_ - x));
  int count = 0;
  for (int lane = 0; lane < lanes; ++lane) {
    if (lane == 0 || index[lane] != index[lane - 1]) {
      groups[count++] = {&refcon_.kernels[index[lane]], lane, lane};
    }
    groups[count - 1].endLane = lane + 1;
  }
  return count;
}

void KernelMap::SumRows(std::int64_t x, std::int64_t y, LaneSums* sums) const {
  const HighlightMap& map = *refcon_.highlightMap;
  const std::int64_t row = y - top_;
  const std::int64_t column = x - left_;
  const LaneView view = {map.origin(), row * map.rowStride() + column, map.planeStride(), 1,
                         map.rowStride()};
  const LaneWindow window = {1 - engine_.rowLanes - column, map.width() - 1 - column, -row,
                             map.height() - 1 - row};
  LaneGroup groups[kMaxLaneRows][kMaxLanes];
  LaneRow rows[kMaxLaneRows];
  for (int i = 0; i < engine_.rowCount; ++i) {
    // Rows below the output use the kernels of its last row.
    rows[i] = {groups[i], GroupLanes(x, std::min(y + i, height_ - 1), groups[i])};
  }
  engine_.sumRows(view, window, rows, sums);
}

}  // namespace vitrell
