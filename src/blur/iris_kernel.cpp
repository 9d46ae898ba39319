// The iris of the realistic blur: its shape, and its weights as compact tap lists.
#include "blur/iris_kernel.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "render/numeric.h"

namespace vitrell {
namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kTwoPi = 6.283185307179586;
constexpr double kHalfPi = 1.5707963267948966;
constexpr double kThreeHalvesPi = 4.71238898038469;

// Keeps pixels that lie on the boundary inside in spite of rounding; also the smallest weight and
// the smallest difference of weights that matter.
constexpr double kEpsilon = 0.0001;

// Angle of (u, v) in 0..2 pi.
double PolarAngle(const PF_ANSICallbacks& maths, double u, double v) {
  if (u == 0.0) {
    return v > 0.0 ? kHalfPi : kThreeHalvesPi;
  }
  double angle = maths.atan(v / u);
  if (u < 0.0) {
    angle += kPi;
  }
  if (angle < 0.0) {
    angle += kTwoPi;
  }
  return angle;
}

// Distance from the centre to the iris boundary in the direction of (u, v).
float BoundaryDistance(const IrisShape& shape, std::int32_t radius, double u, double v) {
  const double sides = (PolarAngle(*shape.maths, u, v) + kHalfPi) / shape.sideAngle;
  const double fraction = sides - TruncateToInt32(sides);
  if (fraction < shape.halfRound || fraction > 1.0 - shape.halfRound) {
    return static_cast<float>(radius);
  }
  const auto apothem = static_cast<float>(shape.apothem * radius);
  return static_cast<float>(apothem / shape.maths->cos((0.5 - fraction) * shape.sideAngle));
}

float WeightAt(const IrisShape& shape, std::int32_t radius, double x, double y) {
  if (x == 0.0 && y == 0.0) {
    return 1.0f;
  }
  const double u = (shape.sinRotation * y + shape.cosRotation * x) / shape.aspect;
  const double v = shape.sinRotation * x - shape.cosRotation * y;
  double distance = shape.maths->sqrt(u * u + v * v);
  if (shape.aspect > 1.0) {
    distance *= shape.aspect;
  }
  const double boundary = BoundaryDistance(shape, radius, u, v);
  if (distance < boundary + kEpsilon) {
    return 1.0f;
  }
  if (distance >= boundary + kEpsilon + 1.0) {
    return 0.0f;
  }
  // Kept: the one-pixel band outside the boundary rises outward from 0 to 1 and then drops to 0.
  return static_cast<float>(distance - boundary - kEpsilon);
}

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

IrisShape MakeIrisShape(const LX_Info& info, const PF_ANSICallbacks& maths) {
  const double roundness = info.irisRoundness;
  IrisShape shape = {};
  shape.maths = &maths;
  shape.sideAngle = kTwoPi / (static_cast<double>(info.irisSides) + 2.0);
  shape.halfRound = roundness / 2.0;
  shape.apothem = maths.cos(shape.sideAngle * (1.0 - roundness) / 2.0);
  shape.aspect = info.irisAspectRatio;
  shape.cosRotation = maths.cos(-info.irisRotation);
  shape.sinRotation = maths.sin(-info.irisRotation);
  return shape;
}

std::int32_t MaxIrisRadius(const LX_Info& info) {
  return TruncateToInt32(info.realisticAmount * 100.0f);
}

KernelReach ReachBetween(const PF_LayerDef& input, const PF_LayerDef& output) {
  const std::int64_t left = input.extent_hint.left;
  const std::int64_t top = input.extent_hint.top;
  return {left - output.width + 1, left + input.width - 1, top - output.height + 1,
          top + input.height - 1};
}

// One row of the weight grid, cut to the columns that can be reached and one more on the right,
// which the differences need.
struct IrisKernelBuilder::Row {
  std::int32_t radius;
  std::int32_t dy;
  std::int64_t firstDx;
  std::int64_t lastDx;
  const float* weights;  // Of firstDx to lastDx.

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
    if (choice == TapChoice::kNonZero ? weight == 0.0f : !(weight > kEpsilon)) {
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
      matters = std::fabs(weight) > kEpsilon;
    }
    if (matters && !points_.Append({static_cast<std::int32_t>(dx), row.dy, weight})) {
      return false;
    }
  }
  return true;
}

bool IrisKernelBuilder::Build(std::int32_t radius, TapChoice choice, IrisKernel* kernel,
                              Buffer<Weight_Pt>* points) {
  const std::int64_t firstDx = std::max<std::int64_t>(-radius, reach_.firstDx);
  const std::int64_t lastDx = std::min<std::int64_t>(radius, reach_.lastDx + 1);
  const std::int64_t firstDy = std::max<std::int64_t>(-radius, reach_.firstDy);
  const std::int64_t lastDy = std::min<std::int64_t>(radius, reach_.lastDy);
  rowStart_.Clear();
  spans_.Clear();
  ones_.Clear();
  points_.Clear();
  const bool empty = firstDx > lastDx || firstDy > lastDy;
  if (!empty && !weights_.Allocate(static_cast<std::size_t>(lastDx - firstDx + 1))) {
    return false;
  }
  kernel->firstDy = firstDy;
  kernel->rowCount = empty ? 0 : lastDy - firstDy + 1;
  for (std::int64_t dy = firstDy; !empty && dy <= lastDy; ++dy) {
    for (std::int64_t dx = firstDx; dx <= lastDx; ++dx) {
      // Kept: the grid holds the shape mirrored left to right, which shows for odd numbers of sides
      // and for rotations.
      weights_[static_cast<std::size_t>(dx - firstDx)] =
          WeightAt(shape_, radius, static_cast<double>(-dx), static_cast<double>(dy));
    }
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
