// Bilinear sampling.
#include "base/pixel_access.h"

namespace vitrell {
namespace {

// Kept: truncating and then subtracting 1 below zero is not floor(): -0.5 gives 0 and -1.0 gives
// -2.
int SampleBase(double position) {
  const std::int32_t truncated = TruncateToInt32(position);
  return truncated < 0 ? WrappingSubtract(truncated, 1) : truncated;
}

}  // namespace

template <typename Pixel>
int GetPointerFromDataDP(const PF_LayerDef* world, double row, double column, Pixel* out,
                         unsigned char mirror) {
  using Channel = ChannelOf<Pixel>;
  const int i = SampleBase(row);
  const int j = SampleBase(column);
  const int nextI = WrappingAdd(i, 1);
  const int nextJ = WrappingAdd(j, 1);
  const Pixel* const nw = GetPointerFromDataP<Pixel>(world, i, j, mirror);
  if ((i == 0 || j == 0) && nw != nullptr) {
    *out = *nw;
    return 0;
  }
  const Pixel* const ne = GetPointerFromDataP<Pixel>(world, i, nextJ, mirror);
  const Pixel* const sw = GetPointerFromDataP<Pixel>(world, nextI, j, mirror);
  const Pixel* const se = GetPointerFromDataP<Pixel>(world, nextI, nextJ, mirror);
  if (nw == nullptr || ne == nullptr || sw == nullptr || se == nullptr) {
    return 0;
  }
  const double fy = row - i;
  const double fx = column - j;
  const double weightNw = (1 - fy) * (1 - fx);
  const double weightNe = (1 - fy) * fx;
  const double weightSw = fy * (1 - fx);
  const double weightSe = fy * fx;
  const auto blend = [&](Channel Pixel::*channel) {
    out->*channel = TruncateToChannel<Channel>(weightNw * nw->*channel + weightNe * ne->*channel +
                                               weightSw * sw->*channel + weightSe * se->*channel);
  };
  blend(&Pixel::alpha);
  blend(&Pixel::red);
  blend(&Pixel::green);
  blend(&Pixel::blue);
  return 0;
}

template int GetPointerFromDataDP<PF_Pixel>(const PF_LayerDef*, double, double, PF_Pixel*,
                                            unsigned char);
template int GetPointerFromDataDP<PF_Pixel16>(const PF_LayerDef*, double, double, PF_Pixel16*,
                                              unsigned char);

}  // namespace vitrell
