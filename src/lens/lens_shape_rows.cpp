// Distances of the drawn lens shapes for many columns of a row at once.
//
// Each column takes the steps of RawDistance in the same order, but a block of columns takes one
// step after the other: divisions overlap, and the compiler makes vectors of whatever is neither a
// call of the host nor a choice among sides. Members are copied to locals because a store through
// `distances` may alias them.
#include <algorithm>
#include <cstdint>

#include "lens/lens_shapes.h"

namespace vitrell {
namespace {

// Small enough for the first-level cache.
constexpr std::uint32_t kBlock = 256;

// The block's positions in the lens's coordinates.
struct Block {
  double u[kBlock];
  double v[kBlock];
};

void TakeRoots(const PF_ANSICallbacks& maths, std::uint32_t count, double* values) {
  const auto root = maths.sqrt;
  for (std::uint32_t i = 0; i < count; ++i) {
    values[i] = root(values[i]);
  }
}

}  // namespace

void LensShape::RawDistances(std::int32_t x, std::int32_t y, std::uint32_t count,
                             double* distances) const {
  // Of a triangle without extent no side has the ex > 0 that DistancesFromSegment needs.
  const bool isTriangle = info_.lensType == kLensTriangle && SegmentOf(Side::kRight).bx > 0;
  if (info_.lensType != kLensCircle && !isTriangle) {
    for (std::uint32_t i = 0; i < count; ++i) {
      distances[i] = RawDistance(static_cast<std::int32_t>(x + std::int64_t{i}), y);
    }
    return;
  }
  const double sine = sinRotation_, cosine = cosRotation_;
  const double scaleWidth = info_.scaleWidth, scaleHeight = info_.scaleHeight;
  const auto dy = static_cast<double>(std::int64_t{y} - info_.positionY);
  const double turnU = sine * dy, turnV = cosine * dy;
  Block block;
  for (std::uint32_t begin = 0; begin < count; begin += kBlock) {
    const std::uint32_t size = std::min(count - begin, kBlock);
    const auto first = static_cast<double>(std::int64_t{x} + begin - info_.positionX);
    for (std::uint32_t i = 0; i < size; ++i) {
      // A sum of whole numbers below 2^53.
      const double dx = first + static_cast<double>(static_cast<std::int32_t>(i));
      block.u[i] = (cosine * dx + turnU) / scaleWidth;
      block.v[i] = (sine * dx - turnV) / scaleHeight;
    }
    if (isTriangle) {
      Triangles(block.u, block.v, size, distances + begin);
    } else {
      Circles(block.u, block.v, size, distances + begin);
    }
  }
}

void LensShape::Circles(const double* u, const double* v, std::uint32_t count,
                        double* distances) const {
  const double band = relativeBand_ * radius_;
  const double inner = radius_ - 0.5 * band;
  for (std::uint32_t i = 0; i < count; ++i) {
    distances[i] = u[i] * u[i] + v[i] * v[i];
  }
  TakeRoots(maths_, count, distances);
  for (std::uint32_t i = 0; i < count; ++i) {
    const double t = distances[i] - inner;
    const double share = LimitToOne(t / band);
    distances[i] = t < 0 ? 0 : share;
  }
}

// Columns that face the same side from outside go together; the few others alone.
void LensShape::Triangles(const double* u, const double* v, std::uint32_t count,
                          double* distances) const {
  std::uint32_t begin = 0;
  while (begin < count) {
    const Side side = FacingSideFromOutside(u[begin], v[begin]);
    if (side == Side::kUnknown) {
      distances[begin] = Triangle(u[begin], v[begin]);
      ++begin;
      continue;
    }
    std::uint32_t end = begin + 1;
    while (end < count && FacingSideFromOutside(u[end], v[end]) == side) {
      ++end;
    }
    DistancesFromSegment(SegmentOf(side), u + begin, v + begin, end - begin, distances + begin);
    begin = end;
  }
}

// GetDistanceFromPtToSegLine from the points (u, -v), at most kBlock of them, for a segment with
// ex > 0. In three loops, each of which compilers make vectors of: between a product and a choice
// they would not.
void LensShape::DistancesFromSegment(const Segment& segment, const double* u, const double* v,
                                     std::uint32_t count, double* distances) const {
  const auto [ax, ay, bx, by] = segment;
  const double ex = bx - ax;
  const double ey = by - ay;
  const double squaredLength = ex * ex + ey * ey;
  double share[kBlock];
  Block beside;
  for (std::uint32_t i = 0; i < count; ++i) {
    share[i] = ((u[i] - ax) * ex + (-v[i] - ay) * ey) / squaredLength;
  }
  for (std::uint32_t i = 0; i < count; ++i) {
    const double fromA = share[i] > 0 ? share[i] : 0;  // 0 x ex is 0: the point A itself.
    beside.u[i] = ax + fromA * ex;
    beside.v[i] = ay + fromA * ey;
  }
  for (std::uint32_t i = 0; i < count; ++i) {
    const double dx = u[i] - (share[i] >= 1 ? bx : beside.u[i]);
    const double dy = -v[i] - (share[i] >= 1 ? by : beside.v[i]);
    distances[i] = dx * dx + dy * dy;
  }
  TakeRoots(maths_, count, distances);
  const double band = radius_ * relativeBand_;
  for (std::uint32_t i = 0; i < count; ++i) {
    distances[i] = LimitToOne(distances[i] / band);
  }
}

}  // namespace vitrell
