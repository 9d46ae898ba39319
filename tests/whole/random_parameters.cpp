// Random values for all parameters of the effect.
#include "whole/random_parameters.h"

#include <algorithm>
#include <cmath>

namespace vitrell::whole {
namespace {

using headless::EffectHost;

// Positions in the host's parameter array.
enum Index : int {
  kType = 2,
  kPlacement = 4,
  kInvertAlpha = 5,
  kFeather = 6,
  kPosition = 7,
  kScale = 8,
  kScaleWidth = 9,
  kScaleHeight = 10,
  kRotation = 11,
  kFastVisible = 15,
  kFastAmount = 16,
  kFastBlurMap = 17,
  kRealisticVisible = 20,
  kRealisticAmount = 21,
  kIrisSides = 22,
  kIrisRoundness = 23,
  kIrisAspectRatio = 24,
  kIrisRotation = 25,
  kRealisticBlurMap = 26,
  kOpticalVisible = 29,
  kOpticalAmount = 30,
  kOpticalLensCenter = 31,
  kOpticalCenter = 32,
  kTrailVisible = 35,
  kTrailAmount = 36,
  kTrailLensCenter = 37,
  kTrailCenter = 38,
  kDirectionalVisible = 41,
  kDirectionalAmount = 42,
  kDirection = 43,
  kLightnessVisible = 48,
  kLightnessAmount = 49,
  kColorVisible = 52,
  kColor = 53,
  kColorOpacity = 54,
  kChromaticVisible = 57,
  kRedCyan = 58,
  kGreenMagenta = 59,
  kBlueYellow = 60,
  kIntensity = 63,
  kMode = 64,
};

// The stages' "Visible" boxes, in the order of the chain.
constexpr int kVisibleBoxes[] = {kFastVisible,  kRealisticVisible,   kOpticalVisible,
                                 kTrailVisible, kDirectionalVisible, kLightnessVisible,
                                 kColorVisible, kChromaticVisible};
constexpr int kStageCount = 8;

class Setter {
 public:
  Setter(Dice& dice, PictureSize size, EffectHost& host) : dice_(dice), size_(size), host_(host) {}

  void Lens(bool hasCustomLayer);
  void Stages();
  void Blurs();
  void Tones();
  void Blend();

 private:
  // Boxes are tested for exactly 1 or for not 0 by their low byte; hosts send 0 and 1.
  void Box(int index, bool on) {
    A_long value = on ? 1 : 0;
    if (dice_.Chance(2)) {
      value = dice_.Pick<A_long>({2, 256, 257, 255});
    }
    host_.Record(index).u.bd.value = value;
  }
  void Point(int index) {
    double x = dice_.Real(0, size_.width);
    double y = dice_.Real(0, size_.height);
    if (dice_.Chance(30)) {
      x = size_.width * 0.5;
      y = size_.height * 0.5;
    } else if (dice_.Chance(15)) {
      x = dice_.Real(-40, size_.width + 40);
      y = dice_.Real(-40, size_.height + 40);
    } else if (dice_.Chance(3)) {
      x = dice_.Real(-9000, 9000);
      y = dice_.Real(-9000, 9000);
    }
    host_.SetPointPixels(index, x, y);
  }
  void Angle(int index) {
    host_.SetAngleDegrees(index,
                          dice_.Chance(30) ? 90.0 * dice_.Between(-5, 9) : dice_.Real(-400, 800));
  }
  // Whole numbers are as usual as others.
  double Amount(double low, double high) {
    const double value = dice_.Real(low, high);
    return dice_.Chance(50) ? std::floor(value) : value;
  }
  double Percent() {
    return dice_.Chance(25) ? dice_.Pick<double>({0, 100, 50, 1}) : Amount(0, 100);
  }
  // As large as `perPixel` operations on each pixel afford.
  double Affordable(double largest, double operations) const {
    const double pixels = static_cast<double>(size_.width) * size_.height;
    return std::min(largest, operations / pixels);
  }

  Dice& dice_;
  PictureSize size_;
  EffectHost& host_;
};

void Setter::Lens(bool hasCustomLayer) {
  const bool custom = hasCustomLayer ? dice_.Chance(60) : dice_.Chance(5);
  host_.SetPopup(kType, custom ? 6 : dice_.Between(1, 5));
  if (dice_.Chance(1)) {
    host_.SetPopup(kType, dice_.Pick<A_long>({0, 7, -3}));
  }
  host_.SetPopup(kPlacement, dice_.Chance(2) ? 3 : dice_.Between(1, 2));
  Box(kInvertAlpha, dice_.Chance(20));
  double feather = Amount(0, 120);
  if (dice_.Chance(30)) {
    feather = 0;
  } else if (dice_.Chance(10)) {
    feather = Amount(0, 1000);
  } else if (dice_.Chance(15)) {
    feather = dice_.Real(0, 4);
  }
  host_.SetFloat(kFeather, feather);
  Point(kPosition);
  const auto scale = [this] {
    if (dice_.Chance(60)) {
      return 100.0;
    }
    return dice_.Chance(10) ? dice_.Pick<double>({0, 0.005, 400}) : Amount(0, 400);
  };
  host_.SetFloat(kScale, scale());
  host_.SetFloat(kScaleWidth, scale());
  host_.SetFloat(kScaleHeight, scale());
  if (dice_.Chance(50)) {
    Angle(kRotation);
  }
}

void Setter::Stages() {
  bool on[kStageCount] = {};
  const int kind = dice_.Below(100);
  if (kind < 40) {
    on[dice_.Below(kStageCount)] = true;
  } else if (kind < 60) {
    on[dice_.Below(kStageCount)] = true;
    on[dice_.Below(kStageCount)] = true;
  } else if (kind < 97) {
    const int percent = dice_.Pick<int>({30, 60, 100});
    for (bool& stage : on) {
      stage = dice_.Chance(percent);
    }
  }
  for (int i = 0; i < kStageCount; ++i) {
    Box(kVisibleBoxes[i], on[i]);
  }
}

void Setter::Blurs() {
  const bool large = dice_.Chance(15);
  const double radius = Affordable(large ? 1500 : 16, large ? 3e5 : 6e4);
  host_.SetFloat(kFastAmount, dice_.Chance(7) ? Amount(0, 1.5) : Amount(0, radius));
  Box(kFastBlurMap, dice_.Chance(45));
  const double side = std::sqrt(Affordable(large ? 40000 : 400, large ? 2e7 : 1.5e6));
  host_.SetFloat(kRealisticAmount, dice_.Chance(10) ? Amount(0, 2) : Amount(0, side / 2));
  host_.SetPopup(kIrisSides, dice_.Between(1, 8));
  host_.SetFloat(kIrisRoundness, Percent());
  host_.SetFloat(kIrisAspectRatio, dice_.Chance(50) ? 1.0 : Amount(0, 4));
  if (dice_.Chance(50)) {
    Angle(kIrisRotation);
  }
  Box(kRealisticBlurMap, dice_.Chance(45));
  if (dice_.Chance(10)) {
    // The limit between a mapped blur and a strengthened mask: twice the feather = amount / 100.
    const double share = dice_.Chance(50) ? host_.Record(kFastAmount).u.fs_d.value
                                          : host_.Record(kRealisticAmount).u.fs_d.value / 100;
    host_.SetFloat(kFeather, share * 0.5);
  }
  host_.SetFloat(kOpticalAmount,
                 dice_.Chance(10) ? dice_.Pick<double>({0, 0.1, 179.9, 180}) : Amount(0, 180));
  Box(kOpticalLensCenter, dice_.Chance(60));
  Point(kOpticalCenter);
  host_.SetFloat(kTrailAmount, Percent());
  Box(kTrailLensCenter, dice_.Chance(60));
  Point(kTrailCenter);
  const double length = Affordable(large ? 700 : 20, 2e5);
  host_.SetFloat(kDirectionalAmount, dice_.Chance(10) ? Amount(0, 2) : Amount(0, length));
  Angle(kDirection);
}

void Setter::Tones() {
  host_.SetFloat(kLightnessAmount,
                 dice_.Chance(15) ? dice_.Pick<double>({-100, 0, 100}) : Amount(-100, 100));
  const auto byte = [this] { return static_cast<A_u_char>(dice_.Below(256)); };
  host_.SetColor(kColor, {dice_.Chance(50) ? A_u_char{255} : byte(), byte(), byte(), byte()});
  host_.SetFloat(kColorOpacity, dice_.Chance(2) ? 180.0 : Percent());
  for (const int index : {kRedCyan, kGreenMagenta, kBlueYellow}) {
    double value = Percent();
    if (dice_.Chance(30)) {
      value = 0;
    } else if (dice_.Chance(4)) {
      value = dice_.Pick<double>({199.96, 199.99, 200, 300});  // Scale 0.0002, 0.00005, 0, -0.5.
    }
    host_.SetFloat(index, value);
  }
}

void Setter::Blend() {
  double intensity = dice_.Chance(40) ? 100.0 : Percent();
  if (dice_.Chance(2)) {
    intensity = 170;
  }
  host_.SetFloat(kIntensity, intensity);
  host_.SetPopup(kMode, dice_.Chance(2) ? dice_.Pick<A_long>({0, 5}) : dice_.Between(1, 4));
}

}  // namespace

void SetRandomParameters(Dice& dice, PictureSize size, bool hasCustomLayer, EffectHost& host) {
  host.ResetParameters();
  Setter setter(dice, size, host);
  setter.Lens(hasCustomLayer);
  setter.Blurs();
  setter.Tones();
  setter.Blend();
  setter.Stages();
}

}  // namespace vitrell::whole
