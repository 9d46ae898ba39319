// Lightness: bends every channel, alpha included, with a power curve.
#include "colour/lightness.h"

#include <cstddef>
#include <cstdint>

#include "host/buffer.h"
#include "host/pixel_pass.h"
#include "host/result.h"
#include "host/world.h"
#include "render/depth_traits.h"
#include "render/numeric.h"

namespace vitrell {
namespace {

using PowFunc = A_FpLong (*)(A_FpLong, A_FpLong);

constexpr double kWhite8 = 255.0;
constexpr double kWhite16 = 32768.0;
constexpr double kUnit16 = 3.0517578125e-05;  // 1 / 32768, exactly.

// The curve for one channel value. Nothing is clamped: a value above white may leave the channel's
// range, and then its low 8 or 16 bits are kept.
std::uint8_t BendChannel(PowFunc power, std::uint8_t value, double gain) {
  return TruncateToChannel<std::uint8_t>(power(value / kWhite8, gain) * kWhite8);
}

std::uint16_t BendChannel(PowFunc power, std::uint16_t value, double gain) {
  return TruncateToChannel<std::uint16_t>(power(value * kUnit16, gain) * kWhite16);
}

// Fills the curve at every value a channel can hold, before the pass that reads it.
template <typename Channel>
[[nodiscard]] PF_Err FillCurve(PowFunc power, double gain, Buffer<Channel>* curve) {
  constexpr std::size_t kValueCount = std::size_t{1} << (8 * sizeof(Channel));
  if (!curve->Allocate(kValueCount)) {
    return PF_Err_OUT_OF_MEMORY;
  }
  for (std::size_t value = 0; value < kValueCount; ++value) {
    (*curve)[value] = BendChannel(power, static_cast<Channel>(value), gain);
  }
  return PF_Err_NONE;
}

// The refcon is the curve.
template <typename Pixel>
PF_Err Lightness(void* refcon, A_long /*x*/, A_long /*y*/, Pixel* in, Pixel* out) {
  const auto* const curve = static_cast<const ChannelOf<Pixel>*>(refcon);
  *out = {curve[in->alpha], curve[in->red], curve[in->green], curve[in->blue]};
  return PF_Err_NONE;
}

template <typename Pixel>
PF_Err RunPass(AEGP_SuiteHandler& suites, IO_Params* io, double gain) {
  Buffer<ChannelOf<Pixel>> curve;
  RETURN_IF_ERROR(FillCurve(io->in_data->utils->ansi.pow, gain, &curve));
  return RunPixelPass(suites, io->in_data, io->src, io->dst, ExtentLines(*io->dst),
                      {Lightness<PF_Pixel>, Lightness<PF_Pixel16>}, curve.data());
}

}  // namespace

PF_Err RunLightness(AEGP_SuiteHandler& suites, IO_Params* io, const LX_Info& info) {
  const double gain = io->in_data->utils->ansi.pow(10.0, -double{info.lightnessAmount});
  return IsDeep(*io->dst) ? RunPass<PF_Pixel16>(suites, io, gain)
                          : RunPass<PF_Pixel>(suites, io, gain);
}

}  // namespace vitrell
