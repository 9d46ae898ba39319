// The weights of the iris as compact lists of taps.
#include "blur/realistic/iris_kernel.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vitrell {
namespace {

// Above this radius every kernel computes its own points: the shared ones would take too much
// memory.
constexpr std::int32_t kMaxSharedRadius = 512;

template <typename T>
bool CopyExactly(const GrowingBuffer<T>& from, Buffer<T>* to) {
  if (!to->Allocate(from.size())) {
    return false;
  }
  if (from.size() != 0) {
    std::memcpy(to->data(), from.data(), from.size() * sizeof(T));
  }
  return true;
}

}  // namespace

KernelReach ReachBetween(const PF_LayerDef& input, const PF_LayerDef& output) {
  const std::int64_t left = input.extent_hint.left;
  const std::int64_t top = input.extent_hint.top;
  return {left - output.width + 1, left + input.width - 1, top - output.height + 1,
          top + input.height - 1};
}

// One row of the weight grid, clipped to the reachable columns and one more on the right, which the
// difference points need.
struct IrisKernelBuilder::Row {
  std::int32_t radius;
  std::int32_t dy;
  std::int64_t firstDx;
  std::int64_t lastDx;
  const float* weights;  // For firstDx to lastDx.

  float At(std::int64_t dx) const { return weights[dx - firstDx]; }
};

bool IrisKernelBuilder::AppendSpans(const Row& row, TapChoice choice) {
  const std::size_t rowStart = spans_.size();
  if (!rowStart_.Append(rowStart)) {
    return false;
  }
  const std::int64_t lastDx = std::min(row.lastDx, reach_.lastDx);
  for (std::int64_t dx = row.firstDx; dx <= lastDx; ++dx) {
    const float weight = row.At(dx);
    if (choice == TapChoice::kNonZero ? weight == 0.0f : !(weight > kIrisEpsilon)) {
      continue;
    }
    if (spans_.size() > rowStart) {
      KernelSpan& last = spans_[spans_.size() - 1];
      if (last.weight == weight && last.dx + last.count == dx) {
        ++last.count;
        continue;
      }
    }
    if (!spans_.Append({static_cast<std::int32_t>(dx), 1, weight})) {
      return false;
    }
  }
  KernelSpan ones = {};
  for (std::size_t i = rowStart; i < spans_.size(); ++i) {
    if (spans_[i].weight == 1.0f && spans_[i].count > ones.count) {
      ones = spans_[i];
    }
  }
  return ones_.Append(ones);
}

bool IrisKernelBuilder::AppendPoints(const Row& row) {
  const std::int64_t radius = row.radius;
  const std::int64_t firstDx = std::max(-radius - 1, reach_.firstDx);
  const std::int64_t lastDx = std::min(radius, reach_.lastDx);
  for (std::int64_t dx = firstDx; dx <= lastDx; ++dx) {
    float weight = 0.0f;
    bool matters = false;
    if (dx == -radius - 1) {
      weight = -row.At(-radius);
      matters = weight != 0.0f;
    } else if (dx == radius) {
      weight = row.At(radius);
      matters = weight != 0.0f;
    } else {
      weight = row.At(dx) - row.At(dx + 1);
      matters = std::fabs(weight) > kIrisEpsilon;
    }
    if (matters && !points_.Append({static_cast<std::int32_t>(dx), row.dy, weight})) {
      return false;
    }
  }
  return true;
}

KernelReach IrisKernelBuilder::ReachOf(std::int64_t radius) const {
  // One more column on the right, which the difference points need.
  return {std::max(-radius, reach_.firstDx), std::min(radius, reach_.lastDx + 1),
          std::max(-radius, reach_.firstDy), std::min(radius, reach_.lastDy)};
}

IrisPoint IrisKernelBuilder::PointOf(std::int64_t dx, std::int64_t dy) const {
  // Kept: the grid is the shape's mirror image (left and right exchanged), which shows for odd
  // numbers of sides and for rotations.
  return PointAt(shape_, static_cast<double>(-dx), static_cast<double>(dy));
}

bool IrisKernelBuilder::ShareTo(std::int32_t maxRadius) {
  const KernelReach reach = ReachOf(maxRadius);
  if (maxRadius > kMaxSharedRadius || reach.IsEmpty()) {
    return true;
  }
  const std::int64_t rows = reach.lastDy - reach.firstDy + 1;
  if (!shared_.Allocate(static_cast<std::size_t>(rows * reach.Columns()))) {
    return false;
  }
  sharedReach_ = reach;
  IrisPoint* point = shared_.data();
  for (std::int64_t dy = reach.firstDy; dy <= reach.lastDy; ++dy) {
    for (std::int64_t dx = reach.firstDx; dx <= reach.lastDx; ++dx) {
      *point++ = PointOf(dx, dy);
    }
  }
  return true;
}

void IrisKernelBuilder::FillWeights(std::int32_t radius, std::int64_t dy, std::int64_t firstDx,
                                    std::int64_t lastDx) {
  float* weight = weights_.data();
  if (shared_.size() == 0) {
    for (std::int64_t dx = firstDx; dx <= lastDx; ++dx) {
      *weight++ = WeightOf(shape_, PointOf(dx, dy), radius);
    }
    return;
  }
  const IrisPoint* point = shared_.data() + (dy - sharedReach_.firstDy) * sharedReach_.Columns() +
                           (firstDx - sharedReach_.firstDx);
  for (std::int64_t dx = firstDx; dx <= lastDx; ++dx) {
    *weight++ = WeightOf(shape_, *point++, radius);
  }
}

bool IrisKernelBuilder::Build(std::int32_t radius, TapChoice choice, IrisKernel* kernel,
                              Buffer<Weight_Pt>* points) {
  const KernelReach reach = ReachOf(radius);
  const auto [firstDx, lastDx, firstDy, lastDy] = reach;
  rowStart_.Clear();
  spans_.Clear();
  ones_.Clear();
  points_.Clear();
  const bool empty = reach.IsEmpty();
  if (!empty && !weights_.Allocate(static_cast<std::size_t>(lastDx - firstDx + 1))) {
    return false;
  }
  kernel->firstDy = firstDy;
  kernel->rowCount = empty ? 0 : lastDy - firstDy + 1;
  for (std::int64_t dy = firstDy; !empty && dy <= lastDy; ++dy) {
    FillWeights(radius, dy, firstDx, lastDx);
    const Row row = {radius, static_cast<std::int32_t>(dy), firstDx, lastDx, weights_.data()};
    if (!AppendSpans(row, choice) || (points != nullptr && !AppendPoints(row))) {
      return false;
    }
  }
  return rowStart_.Append(spans_.size()) && CopyExactly(rowStart_, &kernel->rowStart) &&
         CopyExactly(spans_, &kernel->spans) && CopyExactly(ones_, &kernel->ones) &&
         (points == nullptr || CopyExactly(points_, points));
}

}  // namespace vitrell
