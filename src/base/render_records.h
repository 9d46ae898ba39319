// The records shared by the stages of a render: its settings, the plan made from them, and the
// worlds of one call of a stage.
#ifndef VITRELL_BASE_RENDER_RECORDS_H_
#define VITRELL_BASE_RENDER_RECORDS_H_

#include <cstdint>

#include "host/host_api.h"

namespace vitrell {

// Values of the "Type" popup.
enum LensType : std::int32_t {
  kLensNone = 1,
  kLensCircle = 2,
  kLensWideRectangle = 3,
  kLensTallRectangle = 4,
  kLensTriangle = 5,
  kLensCustom = 6,
};

// Values of the "Placement" popup.
enum LensPlacement : std::int32_t { kCenterMap = 1, kStretchMapToFit = 2 };

// Values of the "MODE" popup.
enum BlendMode : std::int32_t { kNormal = 1, kAdd = 2, kScreen = 3, kMultiply = 4 };

// The settings of one render, converted from the host's parameters. Percentages are stored as
// fractions, angles in radians (except the optical field of view), positions in whole pixels.
// Switches hold the low byte of the host's checkbox value; which of its values count as on is
// decided in the plan.
struct LX_Info {
  std::int32_t lensType;
  PF_LayerDef* customLayer;  // Not owned: the render's copy; null data if there is none.
  std::int32_t placement;
  std::uint8_t invertAlpha;
  float feather;           // Fraction of the lens size.
  std::int32_t positionX;  // In pixels, as are all positions and centres.
  std::int32_t positionY;
  float scaleWidth;  // Factor.
  float scaleHeight;
  double rotation;  // Radians.
  std::uint8_t fastBlurVisible;
  float fastBlurAmount;  // Box radius in pixels.
  std::uint8_t fastBlurUseLensAsBlurMap;
  std::uint8_t realisticVisible;
  float realisticAmount;   // Kernel radius in pixels / 100.
  std::int32_t irisSides;  // Popup value; the polygon has this plus 2 sides.
  float irisRoundness;
  float irisAspectRatio;
  double irisRotation;  // Radians.
  std::uint8_t realisticUseLensAsBlurMap;
  std::uint8_t opticalVisible;
  float opticalAmount;  // Field of view in degrees.
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

// The worlds of one call of a stage: the one it reads and the one it writes. Each call has its own
// record; stages pass nothing on to each other through it.
struct IO_Params {
  PF_InData* in_data;
  PF_OutData* out_data;  // No stage reads it.
  PF_LayerDef* src;
  PF_LayerDef* dst;
};

// The two calls of the blur dispatcher, before and after the lens stage.
enum class BlurPass { kUniform, kLensMapped };

// What the mask is drawn from.
enum class MaskSource {
  kNothing,     // The lens has no area: 0 everywhere.
  kEverything,  // There is no lens shape: 1 everywhere.
  kShape,
  kCustomLayer,
};

struct MaskPlan {
  MaskSource source;
  bool isInverted;
  bool isWholeNeeded;  // A blur may read every value of g_LensMask directly.
};

struct LensPlan {
  bool isOn;
  // The lens stage raises each mask value m to m + m x strength, instead of a blur that follows the
  // lens.
  bool isStrengthened;
  double strength;
};

struct FastBlurPlan {
  bool isInUniformPass;
  bool isInMappedPass;
  bool isCopy;  // If the stage runs, it only copies.
  bool isByMask;
  std::int32_t radiusPx;  // INT32_MIN for amounts beyond 32 bits.
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

// What one render does: every decision that depends on the settings alone, made once before the
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
  // Which of the host's optional math callbacks the render calls. Sine, cosine and square root are
  // always needed.
  bool needsPow;
  bool needsTan;
  bool needsAtan;
};

}  // namespace vitrell

#endif  // VITRELL_BASE_RENDER_RECORDS_H_
