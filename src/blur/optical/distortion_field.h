// Computes the source position of each pixel of the optical distortion.
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

// The distortion of a wide-angle lens of focal length f: a pixel at distance d from the centre is
// sampled at distance f x sin(atan(d / f)), which is always smaller than d.
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

  // The source of a pixel whose distance from the centre is above 0.
  SamplePoint SourceOf(std::int32_t x, std::int32_t y, double distance) const;
};

// Some pixels of one row and their sources. Each step is computed for all of them before the next,
// so that the divisions of several pixels overlap.
struct DistortedPixels {
  static constexpr int kCapacity = 256;

  int count = 0;
  std::int32_t x[kCapacity];
  SamplePoint sources[kCapacity];

  // Computes the sources of the pixels x of row y, with the same bits as SourceOf, and removes the
  // centre pixel, which is not moved.
  void FindSources(const DistortionField& field, std::int32_t y);
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_OPTICAL_DISTORTION_FIELD_H_
