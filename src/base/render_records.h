// The records that the stages of a render share: its settings, and the context of a stage.
#ifndef VITRELL_BASE_RENDER_RECORDS_H_
#define VITRELL_BASE_RENDER_RECORDS_H_

#include <cstdint>

#include "host/host_api.h"

namespace vitrell {

// Popup values of "Type".
enum LensType : std::int32_t {
  kLensNone = 1,
  kLensCircle = 2,
  kLensWideRectangle = 3,
  kLensTallRectangle = 4,
  kLensTriangle = 5,
  kLensCustom = 6,
};

// Popup values of "Placement".
enum LensPlacement : std::int32_t { kCenterMap = 1, kStretchMapToFit = 2 };

// Popup values of "MODE".
enum BlendMode : std::int32_t { kNormal = 1, kAdd = 2, kScreen = 3, kMultiply = 4 };

// Flat record, rebuilt for every render. After the conversion there are no percents (fractions
// instead) and no degrees (radians instead); positions and centres are whole pixels. Booleans are
// the low byte of the host's checkbox value and count as on only when they are exactly 1.
struct LX_Info {
  std::int32_t lensType;
  PF_LayerDef* customLayer;  // Not owned; the render's private copy, its data null without one.
  std::int32_t placement;
  std::uint8_t invertAlpha;
  float feather;
  std::int32_t positionX;
  std::int32_t positionY;
  float scaleWidth;
  float scaleHeight;
  double rotation;
  std::uint8_t fastBlurVisible;
  float fastBlurAmount;  // Box radius in pixels.
  std::uint8_t fastBlurUseLensAsBlurMap;
  std::uint8_t realisticVisible;
  float realisticAmount;   // Kernel radius in hundreds of pixels.
  std::int32_t irisSides;  // Popup value; the polygon has two sides more.
  float irisRoundness;
  float irisAspectRatio;
  double irisRotation;
  std::uint8_t realisticUseLensAsBlurMap;
  std::uint8_t opticalVisible;
  float opticalAmount;  // Field of view in degrees: the one angle that stays so.
  std::uint8_t opticalCenterOfLens;
  std::int32_t opticalCenterX;
  std::int32_t opticalCenterY;
  std::uint8_t trailVisible;
  float trailAmount;
  std::uint8_t trailCenterOfLens;
  std::int32_t trailCenterX;
  std::int32_t trailCenterY;
  std::uint8_t directionalVisible;
  float directionalAmount;  // Half length of the line in pixels.
  double directionalAngle;
  std::uint8_t lightnessVisible;
  float lightnessAmount;
  std::uint8_t colorVisible;
  float colorOpacity;
  PF_Pixel colorValue;
  std::uint8_t chromaticVisible;
  float chromaticRedCyan;
  float chromaticGreenMagenta;
  float chromaticBlueYellow;
  float intensity;
  std::int32_t mode;
};

// The context of one render. src and dst are re-pointed before every stage at the world it reads
// and the world it writes.
struct IO_Params {
  PF_InData* in_data;
  PF_OutData* out_data;
  PF_LayerDef* src;
  PF_LayerDef* dst;
};

}  // namespace vitrell

#endif  // VITRELL_BASE_RENDER_RECORDS_H_
