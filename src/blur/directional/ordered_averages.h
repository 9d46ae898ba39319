// Averages of 8-bit lines as they are defined, for pixels whose running sums do not decide them.
#ifndef VITRELL_BLUR_DIRECTIONAL_ORDERED_AVERAGES_H_
#define VITRELL_BLUR_DIRECTIONAL_ORDERED_AVERAGES_H_

#include <cstddef>
#include <cstdint>

#include "base/buffer.h"
#include "blur/directional/line_taps.h"
#include "blur/directional/running_line_sums.h"
#include "host/host_api.h"

namespace vitrell {

inline constexpr int kMaxGroupPixels = kMaxGroupValues / kChannels;

// A group of pixels, with N of running_line.h for each of them.
struct OrderedGroup {
  LinePixels line;
  std::int32_t counts[kMaxGroupPixels];
};

class OrderedAverages {
 public:
  // Prepares the taps of a line that FindRunningLine has recognised. False if memory is short.
  [[nodiscard]] bool Prepare(const LineTaps& line);

  // Only then may the other functions be called.
  bool IsReady() const { return tapCount_ != 0; }

  // Averages kOrderedGroups groups. Alpha is 255, or 0 where all taps are transparent.
  void Average(const RunningEngine& engine, const OrderedGroup* groups,
               PF_Pixel (*averages)[kMaxGroupPixels]) const;

  // The average of a line whose taps all have the middle's colour and alpha, of which `pixel` is
  // the four values in MirroredPixels.
  PF_Pixel OfUniform(const std::uint8_t* pixel) const;

 private:
  static constexpr int kColorValues = PF_MAX_CHAN8 + 1;

  void PrepareUniform();
  PF_Pixel AverageOne(const LinePixels& line, std::int32_t count, const float* sums) const;
  double WeightInOrder(const LinePixels& line) const;

  Buffer<LineSumTap> taps_;
  std::size_t tapCount_ = 0;
  std::int32_t length_ = 0;
  bool areWeightsExact_ = false;         // Multiples of 1 / length, which is a power of two.
  double weightSum_ = 0;                 // Of lines without transparent taps.
  A_u_char uniform_[kColorValues] = {};  // For each value the average of a line of it.
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_ORDERED_AVERAGES_H_
