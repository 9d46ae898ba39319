// The lens mask: how much each pixel of the output lies inside the lens.
#include "render/lens_mask.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "host/world.h"
#include "render/lens_shapes.h"
#include "render/pixel_access.h"

namespace vitrell {

double* g_LensMask = nullptr;
std::size_t g_LensMaskSize = 0;

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kShallowLuminanceScale = 65025;               // 255 x 255.
constexpr double kDeepLuminanceScale = 9.313225746154785e-10;  // 2 to the power -30.

// The custom lens: luminance times alpha of another layer's image.
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

// Raised-cosine fall-off from 1 inside to 0 outside; exact at both ends, whatever the host's
// cosine.
double FallOff(double rawDistance, const PF_ANSICallbacks& maths) {
  if (rawDistance == 0) {
    return 1;
  }
  if (rawDistance == 1) {
    return 0;
  }
  return (maths.cos(rawDistance * kPi) + 1) * 0.5;
}

// Layer column of the i-th value of a mask row.
std::int32_t Column(const PF_LRect& rect, std::size_t i) {
  return static_cast<std::int32_t>(rect.left + static_cast<std::int64_t>(i));
}

// Calls fill(y, row, width) for every row of the mask, then inverts it where the settings say so.
// The last row may be cut.
template <typename FillRow>
void FillRows(const PF_LRect& rect, bool invert, const FillRow& fillRow) {
  const auto fullWidth = static_cast<std::size_t>(std::int64_t{rect.right} - rect.left);
  double* row = g_LensMask;
  double* const end = g_LensMask + g_LensMaskSize;
  for (std::int32_t y = rect.top; row != end; ++y) {
    const std::size_t width = std::min(fullWidth, static_cast<std::size_t>(end - row));
    fillRow(y, row, width);
    if (invert) {
      std::transform(row, row + width, row, [](double inside) { return 1 - inside; });
    }
    row += width;
  }
}

void FillConstant(const PF_LRect& rect, bool invert, double value) {
  FillRows(rect, invert, [value](std::int32_t, double* row, std::size_t width) {
    std::fill(row, row + width, value);
  });
}

void FillCustom(const LensMaskInput& input, const LX_Info& info, const PF_LRect& rect,
                bool invert) {
  const CustomLens lens(input, info);
  FillRows(rect, invert, [&](std::int32_t y, double* row, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i) {
      row[i] = lens.Value(Column(rect, i), y);
    }
  });
}

void FillShape(const LensMaskInput& input, const LX_Info& info, const PF_LRect& rect, bool invert) {
  const LensShape shape(input.inData, info, input.output->width, input.output->height);
  const PF_ANSICallbacks& maths = input.inData->utils->ansi;
  FillRows(rect, invert, [&](std::int32_t y, double* row, std::size_t width) {
    shape.Classify(y, rect.left, width, row);
    for (std::size_t i = 0; i < width; ++i) {
      if (row[i] == LensShape::kUndecided) {
        row[i] = FallOff(shape.RawDistance(Column(rect, i), y), maths);
      }
    }
  });
}

// More values than the worlds of the render can ask for. Their rectangles are those of their pixels
// or reach a fifth beyond on every side.
std::uint64_t MostValues(const LensMaskInput& input) {
  constexpr std::int64_t kTwiceInEachDirection = 4;
  const PF_LayerDef& output = *input.output;
  const std::int64_t outputPixels =
      std::int64_t{std::max(output.width, 0)} * std::max(output.height, 0);
  const std::int64_t pixels = std::max({outputPixels, input.inputPixels, std::int64_t{1}});
  return static_cast<std::uint64_t>(pixels) * kTwiceInEachDirection;
}

[[nodiscard]] PF_Err AllocateMask(const LensMaskInput& input) {
  const PF_LRect& rect = input.output->extent_hint;
  FreeLensMask(false);
  const std::int64_t width = std::int64_t{rect.right} - rect.left;
  const std::int64_t height = std::int64_t{rect.bottom} - rect.top;
  if (width <= 0 || height <= 0) {
    return PF_Err_NONE;
  }
  const std::uint64_t count = std::min(
      static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height), MostValues(input));
  constexpr auto kMaxValues =
      static_cast<std::uint64_t>(std::numeric_limits<std::ptrdiff_t>::max()) / sizeof(double);
  if (count > kMaxValues) {
    return PF_Err_OUT_OF_MEMORY;
  }
  g_LensMask = static_cast<double*>(std::malloc(count * sizeof(double)));
  if (g_LensMask == nullptr) {
    return PF_Err_OUT_OF_MEMORY;
  }
  g_LensMaskSize = count;
  return PF_Err_NONE;
}

}  // namespace

PF_Err BuildLensMask(const LensMaskInput& input, const LX_Info& info) {
  const PF_LRect& rect = input.output->extent_hint;
  if (const PF_Err err = AllocateMask(input); err != PF_Err_NONE || g_LensMaskSize == 0) {
    return err;
  }
  const bool invert = info.invertAlpha == 1;
  if (!(info.scaleWidth > 0 && info.scaleHeight > 0)) {
    FillConstant(rect, invert, 0);
  } else if (info.lensType == kLensCustom) {
    FillCustom(input, info, rect, invert);
  } else if (info.lensType >= kLensCircle && info.lensType <= kLensTriangle) {
    FillShape(input, info, rect, invert);
  } else {
    FillConstant(rect, invert, 1);
  }
  return PF_Err_NONE;
}

void FreeLensMask(bool keepAddress) {
  if (g_LensMaskSize != 0) {
    std::free(g_LensMask);
    g_LensMaskSize = 0;
  }
  if (!keepAddress) {
    g_LensMask = nullptr;
  }
}

}  // namespace vitrell
