// The custom lens: luminance times alpha of another layer's image.
#ifndef VITRELL_LENS_CUSTOM_LENS_H_
#define VITRELL_LENS_CUSTOM_LENS_H_

#include <cstdint>

#include "base/render_records.h"
#include "host/host_api.h"
#include "lens/lens_mask.h"

namespace vitrell {

// Computes the mask from the custom layer. Const use is safe on any number of threads.
class CustomLens {
 public:
  CustomLens(const LensMaskInput& input, const LX_Info& info);

  // Writes the mask values of layer row y from column left on; 0 if there is no image.
  void FillRow(std::int32_t y, std::int32_t left, std::uint32_t count, double* values) const;

 private:
  template <typename Pixel>
  void FillFromImage(std::int32_t y, std::int32_t left, std::uint32_t count, double* values) const;
  // Unnormalised luminance times alpha at a position in the image's pixels.
  template <typename Pixel>
  double Sample(double row, double column) const;
  template <typename Pixel>
  double SampleAnywhere(double row, double column) const;
  template <typename Pixel>
  double SampleInside(std::int32_t i, std::int32_t j, double fy, double fx) const;

  const LX_Info& info_;
  const PF_LayerDef* image_;
  // A sample whose base row lies in [1, endRow_) and base column in [1, endColumn_) has all four
  // neighbours. Both are 0 where the image's origin is not (0, 0).
  std::int32_t endRow_ = 0;
  std::int32_t endColumn_ = 0;
  double sin_ = 0;
  double cos_ = 1;
  double factorX_ = 1;
  double factorY_ = 1;
  double middleX_ = 0;
  double middleY_ = 0;
};

}  // namespace vitrell

#endif  // VITRELL_LENS_CUSTOM_LENS_H_
