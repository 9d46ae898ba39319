// Averages of 8-bit lines as they are defined, for pixels whose running sums do not decide them.
#include "blur/directional/ordered_averages.h"

#include <bit>
#include <cmath>

#include "base/numeric.h"
#include "blur/directional/mirrored_pixels.h"

namespace vitrell {
namespace {

// More than the part by which the ordered sum of the weights can differ from N / length: each of
// these is off by less than 2^-44 and not below 1 / 2901, and their sum by 2^-53 for each tap.
constexpr double kWeightDeviation = 0x1p-31;

PF_Pixel Quotients(const float* sums, double weight) {
  return {PF_MAX_CHAN8, TruncateToChannel<A_u_char>(sums[1] / weight),
          TruncateToChannel<A_u_char>(sums[2] / weight),
          TruncateToChannel<A_u_char>(sums[3] / weight)};
}

bool IsInteger(double value) { return value == std::floor(value); }

bool AreSameColors(const PF_Pixel& a, const PF_Pixel& b) {
  return a.red == b.red && a.green == b.green && a.blue == b.blue;
}

}  // namespace

// Taps of weight 0 are left out: they would add +0, and no sum is ever -0. There are no taps at all
// if a weight cannot be split.
bool OrderedAverages::Prepare(const LineTaps& line) {
  if (!taps_.Allocate(static_cast<std::size_t>(line.count()))) {
    return false;
  }
  length_ = (line.count() - 1) / 2;
  weightSum_ = line.weightSum();
  areWeightsExact_ = std::has_single_bit(static_cast<std::uint32_t>(length_));
  for (const LineTap& tap : line) {
    if (tap.weight != 0.0) {
      LineSumTap& entry = taps_[tapCount_++];
      areWeightsExact_ = areWeightsExact_ && IsInteger(tap.weight * length_);
      entry = {tap.y, tap.x * kPixelBytes, tap.weight, 0.0f, 0.0f};
      if (!SplitWeight(&entry)) {
        tapCount_ = 0;
        return true;
      }
    }
  }
  PrepareUniform();
  return true;
}

void OrderedAverages::PrepareUniform() {
  float sums[kColorValues] = {};
  for (std::size_t i = 0; i < tapCount_; ++i) {
    for (int value = 0; value < kColorValues; ++value) {
      sums[value] += static_cast<float>(value * taps_[i].weight);
    }
  }
  for (int value = 0; value < kColorValues; ++value) {
    uniform_[value] = TruncateToChannel<A_u_char>(sums[value] / weightSum_);
  }
}

void OrderedAverages::Average(const RunningEngine& engine, const OrderedGroup* groups,
                              PF_Pixel (*averages)[kMaxGroupPixels]) const {
  LinePixels lines[kOrderedGroups];
  for (int i = 0; i < kOrderedGroups; ++i) {
    lines[i] = groups[i].line;
  }
  float sums[kOrderedGroups][kMaxGroupValues];
  engine.sumInOrder(lines, taps_.data(), taps_.data() + tapCount_, sums);
  for (int i = 0; i < kOrderedGroups; ++i) {
    for (int pixel = 0; pixel < engine.groupPixels; ++pixel) {
      averages[i][pixel] = AverageOne(lines[i], groups[i].counts[pixel],
                                      sums[i] + std::ptrdiff_t{pixel} * kChannels);
      lines[i].column += kPixelBytes;
    }
  }
}

// The ordered sum of the weights is N / length if no rounding takes part in it. Otherwise it need
// not be known if it makes no difference.
PF_Pixel OrderedAverages::AverageOne(const LinePixels& line, std::int32_t count,
                                     const float* sums) const {
  if (count == 0) {
    return {};
  }
  if (count == length_ * length_) {
    return Quotients(sums, weightSum_);
  }
  const double weight = static_cast<double>(count) / length_;
  if (areWeightsExact_) {
    return Quotients(sums, weight);
  }
  const PF_Pixel low = Quotients(sums, weight * (1 + kWeightDeviation));
  const PF_Pixel high = Quotients(sums, weight * (1 - kWeightDeviation));
  return AreSameColors(low, high) ? low : Quotients(sums, WeightInOrder(line));
}

double OrderedAverages::WeightInOrder(const LinePixels& line) const {
  double weight = 0;
  for (std::size_t i = 0; i < tapCount_; ++i) {
    const LineSumTap& tap = taps_[i];
    weight += line.column[line.rows[tap.row] + tap.column] * tap.weight;
  }
  return weight;
}

PF_Pixel OrderedAverages::OfUniform(const std::uint8_t* pixel) const {
  if (pixel[0] == 0) {
    return {};
  }
  return {PF_MAX_CHAN8, uniform_[pixel[1]], uniform_[pixel[2]], uniform_[pixel[3]]};
}

}  // namespace vitrell
