// The line of the directional blur: its points and their weights.
#ifndef VITRELL_BLUR_DIRECTIONAL_LINE_TAPS_H_
#define VITRELL_BLUR_DIRECTIONAL_LINE_TAPS_H_

#include <cstdint>

#include "base/buffer.h"
#include "base/render_records.h"
#include "host/host_api.h"

namespace vitrell {

// One tap of the line: its offset in whole pixels, and its weight, which falls from 1 at the pixel
// to 0 at the line's ends.
struct LineTap {
  std::int32_t x;
  std::int32_t y;
  double weight;
};

// The taps of one directional blur, rasterised once per pass.
class LineTaps {
 public:
  // Rasterises the line of info.directionalAmount and info.directionalAngle with the host's maths.
  // If the line is too long or memory is short, there are no taps, and the result is
  // PF_Err_OUT_OF_MEMORY if isNeeded.
  [[nodiscard]] PF_Err Build(const PF_InData* inData, const LX_Info& info, bool isNeeded);

  const LineTap* begin() const { return taps_.data(); }
  const LineTap* end() const { return taps_.data() + count_; }
  std::int32_t count() const { return count_; }
  double weightSum() const { return weightSum_; }

 private:
  Buffer<LineTap> taps_;
  std::int32_t count_ = 0;
  double weightSum_ = 0;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_LINE_TAPS_H_
