// The records that the stages of a render share: its settings, the plan made from them, and the
// context of a stage.
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
  float feather;           // Fraction of the lens size.
  std::int32_t positionX;  // Pixels, and so every position and centre.
  std::int32_t positionY;
  float scaleWidth;  // Factor.
  float scaleHeight;
  double rotation;  // Radians.
  std::uint8_t fastBlurVisible;
  float fastBlurAmount;  // Box radius in pixels.
  std::uint8_t fastBlurUseLensAsBlurMap;
  std::uint8_t realisticVisible;
  float realisticAmount;   // Kernel radius in hundreds of pixels.
  std::int32_t irisSides;  // Popup value; the polygon has two sides more.
  float irisRoundness;
  float irisAspectRatio;
  double irisRotation;  // Radians.
  std::uint8_t realisticUseLensAsBlurMap;
  std::uint8_t opticalVisible;
  float opticalAmount;  // Field of view in degrees: the one angle that stays so.
  std::uint8_t opticalCenterOfLens;
  std::int32_t opticalCenterX;
  std::int32_t opticalCenterY;
  std::uint8_t trailVisible;
  float trailAmount;  // Fraction.
  std::uint8_t trailCenterOfLens;
  std::int32_t trailCenterX;
  std::int32_t trailCenterY;
  std::uint8_t directionalVisible;
  float directionalAmount;  // Half length of the line in pixels.
  double directionalAngle;  // Radians.
  std::uint8_t lightnessVisible;
  float lightnessAmount;  // -1 to 1.
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

// The context of one call of a stage: the world it reads and the world it writes. Every call has
// its own; nothing is handed on from stage to stage.
struct IO_Params {
  PF_InData* in_data;
  PF_OutData* out_data;  // Read by nobody.
  PF_LayerDef* src;
  PF_LayerDef* dst;
};

// The two calls of the blur dispatcher: before the lens stage, and after it.
enum class BlurPass { kUniform, kLensMapped };

// What a mask is drawn from.
enum class MaskSource {
  kNothing,     // The lens has no extent: 0 everywhere.
  kEverything,  // No lens shape: 1 everywhere.
  kShape,
  kCustomLayer,
};

struct MaskPlan {
  MaskSource source;
  bool isInverted;
  bool isWholeNeeded;  // A blur reads g_LensMask itself, so that every value must be in it.
};

struct LensPlan {
  bool isOn;
  // The mask is strengthened by a fraction of itself in place of a blur that follows it.
  bool isStrengthened;
  double strength;
};

struct FastBlurPlan {
  bool isInUniformPass;
  bool isInMappedPass;
  bool isCopy;  // The stage copies whenever it runs.
  bool isByMask;
  std::int32_t radiusPx;  // Negative for an amount that 32 bits cannot hold.
};

struct RealisticBlurPlan {
  bool isInUniformPass;
  bool isInMappedPass;
  bool isCopy;
  bool isByMask;
};

struct PixelPosition {
  std::int32_t x;
  std::int32_t y;
};

// What one render does: every decision that hangs on the settings alone, taken once, before the
// first stage.
struct RenderPlan {
  MaskPlan mask;
  LensPlan lens;
  FastBlurPlan fastBlur;
  RealisticBlurPlan realisticBlur;
  bool isOpticalOn;
  PixelPosition opticalCenter;
  bool isTrailOn;
  PixelPosition trailCenter;
  bool isDirectionalOn;
  bool isLightnessOn;
  bool isColorOn;
  bool isChromaticOn;
  bool isBlendBeforeLens;  // The final blend runs before the lens stage.
  bool isMappedPassOn;     // The lens-mapped blurs and a final blend follow the lens stage.
  // The host's maths beyond those that every render needs.
  bool needsPow;
  bool needsTan;
  bool needsAtan;
};

}  // namespace vitrell

#endif  // VITRELL_BASE_RENDER_RECORDS_H_
