// Where the optical distortion takes each pixel from.
#ifndef VITRELL_BLUR_OPTICAL_DISTORTION_FIELD_H_
#define VITRELL_BLUR_OPTICAL_DISTORTION_FIELD_H_

#include <cstdint>

#include "base/render_records.h"
#include "host/host_api.h"

namespace vitrell {

struct DistortRefcon {
  std::int32_t centerX;
  std::int32_t centerY;
  double focalLengthPx;
  const IO_Params* io;
};

// A point between pixels, in layer coordinates.
struct SamplePoint {
  double row;
  double column;
};

// The bend of a wide-angle lens: a pixel at some distance from the centre comes from f x sin(atan(
// distance / f)), always nearer to the centre than itself, f being the focal length.
struct DistortionField {
  explicit DistortionField(const DistortRefcon& refcon)
      : centerX(refcon.centerX),
        centerY(refcon.centerY),
        focalLengthPx(refcon.focalLengthPx),
        squareRoot(refcon.io->in_data->utils->ansi.sqrt) {}

  std::int32_t centerX;
  std::int32_t centerY;
  double focalLengthPx;
  A_FpLong (*squareRoot)(A_FpLong);  // The host's.

  double DistanceOf(std::int32_t x, std::int32_t y) const;

  // The source of one pixel at a distance above 0.
  SamplePoint SourceOf(std::int32_t x, std::int32_t y, double distance) const;
};

// Neighbouring pixels of one row and their sources. Step by step for all of them, the divisions of
// several pixels overlap.
struct DistortedPixels {
  static constexpr int kCapacity = 256;

  int count = 0;
  std::int32_t x[kCapacity];
  SamplePoint sources[kCapacity];

  // Fills the sources of the pixels x of a row and drops the centre, which is not
  // moved. The same bits as SourceOf.
  void FindSources(const DistortionField& field, std::int32_t y);
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_OPTICAL_DISTORTION_FIELD_H_
