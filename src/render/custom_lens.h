// The custom lens: luminance times alpha of another layer's image.
#ifndef VITRELL_RENDER_CUSTOM_LENS_H_
#define VITRELL_RENDER_CUSTOM_LENS_H_

#include <cstdint>

#include "host/host_api.h"
#include "host/world.h"
#include "render/lens_mask.h"
#include "render/pixel_access.h"
#include "render/settings.h"

namespace vitrell {

class CustomLens {
 public:
  CustomLens(const LensMaskInput& input, const LX_Info& info)
      : info_(info), image_(info.customLayer) {
    const PF_ANSICallbacks& maths = input.inData->utils->ansi;
    sin_ = maths.sin(-info.rotation);
    cos_ = maths.cos(-info.rotation);
    const double ratioX = static_cast<double>(image_->width) / input.output->width;
    const double ratioY = static_cast<double>(image_->height) / input.output->height;
    if (info.placement == kStretchMapToFit) {
      factorX_ = ratioX;
      factorY_ = ratioY;
    }
    const bool center = info.placement == kCenterMap;
    const PF_LRect& extent = input.inputExtent;
    middleX_ =
        (center ? ratioX : 1) * static_cast<double>(std::int64_t{extent.left} + extent.right) * 0.5;
    middleY_ =
        (center ? ratioY : 1) * static_cast<double>(std::int64_t{extent.top} + extent.bottom) * 0.5;
  }

  // Mask value at layer position (x, y); 0 where there is no image.
  double Value(std::int32_t x, std::int32_t y) const {
    if (image_->data == nullptr) {
      return 0;
    }
    const double p = info_.scaleWidth > kLeastScale
                         ? static_cast<double>(std::int64_t{x} - info_.positionX) / info_.scaleWidth
                         : 0;
    const double q =
        info_.scaleHeight > kLeastScale
            ? static_cast<double>(std::int64_t{info_.positionY} - y) / info_.scaleHeight
            : 0;
    // Kept: the sample lies one pixel up and left of the lens's own geometry.
    const double column = factorX_ * (middleX_ + sin_ * q + cos_ * p) - 1.0;
    const double row = factorY_ * (middleY_ + sin_ * p - cos_ * q) - 1.0;
    const double m = 1 - Luminance(row, column);
    return 1 - m;
  }

 private:
  static constexpr double kLeastScale = 0.0001;
  static constexpr double kShallowLuminanceScale = 65025;               // 255 x 255.
  static constexpr double kDeepLuminanceScale = 9.313225746154785e-10;  // 2 to the power -30.

  double Luminance(double row, double column) const {
    if (IsDeep(*image_)) {
      PF_Pixel16 sample = {};
      GetPointerFromDataDP(image_, row, column, &sample, 0);
      return Luma(sample) * sample.alpha * kDeepLuminanceScale;
    }
    PF_Pixel sample = {};
    GetPointerFromDataDP(image_, row, column, &sample, 0);
    return Luma(sample) * sample.alpha / kShallowLuminanceScale;
  }

  template <typename Pixel>
  static double Luma(const Pixel& pixel) {
    return 0.299 * pixel.red + 0.587 * pixel.green + 0.114 * pixel.blue;
  }

  const LX_Info& info_;
  const PF_LayerDef* image_;
  double sin_ = 0;
  double cos_ = 1;
  double factorX_ = 1;
  double factorY_ = 1;
  double middleX_ = 0;
  double middleY_ = 0;
};

}  // namespace vitrell

#endif  // VITRELL_RENDER_CUSTOM_LENS_H_
