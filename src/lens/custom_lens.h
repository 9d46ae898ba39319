// The custom lens: luminance times alpha of another layer's image.
#ifndef VITRELL_LENS_CUSTOM_LENS_H_
#define VITRELL_LENS_CUSTOM_LENS_H_

#include <cstdint>

#include "base/render_records.h"
#include "host/host_api.h"
#include "lens/lens_mask.h"

namespace vitrell {

// Const use is safe on any number of threads.
class CustomLens {
 public:
  CustomLens(const LensMaskInput& input, const LX_Info& info);

  // Writes the mask values of line y from column left on; 0 where there is no image.
  void FillRow(std::int32_t y, std::int32_t left, std::uint32_t count, double* values) const;

 private:
  template <typename Pixel>
  void FillFromImage(std::int32_t y, std::int32_t left, std::uint32_t count, double* values) const;
  // Luminance times alpha at a position of the image, in the image's own units.
  template <typename Pixel>
  double Sample(double row, double column) const;
  template <typename Pixel>
  double SampleAnywhere(double row, double column) const;
  template <typename Pixel>
  double SampleInside(std::int32_t i, std::int32_t j, double fy, double fx) const;

  const LX_Info& info_;
  const PF_LayerDef* image_;
  // Samples whose base lies from 1 to before these have all four neighbours; 0 when unknown.
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
