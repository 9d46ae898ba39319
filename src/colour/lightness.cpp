// Lightness: bends every channel, alpha included, with a power curve.
#include "colour/lightness.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/buffer.h"
#include "base/numeric.h"
#include "host/world.h"

namespace vitrell {
namespace {

constexpr double kWhite8 = 255.0;
constexpr double kWhite16 = 32768.0;
constexpr double kUnit16 = 3.0517578125e-05;  // 1 / 32768, exactly.

// The host's power function.
auto PowOf(const LightnessRefcon& refcon) { return refcon.io->in_data->utils->ansi.pow; }

// The curve at one channel value. It does not clamp: a result beyond the channel's range keeps only
// its low 8 or 16 bits.
std::uint8_t BendChannel(const LightnessRefcon& refcon, std::uint8_t value) {
  return TruncateToChannel<std::uint8_t>(PowOf(refcon)(value / kWhite8, refcon.gain) * kWhite8);
}

std::uint16_t BendChannel(const LightnessRefcon& refcon, std::uint16_t value) {
  return TruncateToChannel<std::uint16_t>(PowOf(refcon)(value * kUnit16, refcon.gain) * kWhite16);
}

constexpr std::size_t kValues8 = std::size_t{1} << 8;
constexpr std::size_t kValues16 = std::size_t{1} << 16;

PF_Err Copy8(void* /*refcon*/, A_long /*x*/, A_long /*y*/, PF_Pixel* in, PF_Pixel* out) {
  *out = *in;
  return PF_Err_NONE;
}

// The refcon of the 8-bit callbacks: the record and its curve.
struct ShallowCurve {
  LightnessRefcon refcon;
  std::uint8_t values[kValues8];
};

PF_Err Lightness8(void* refcon, A_long /*x*/, A_long /*y*/, PF_Pixel* in, PF_Pixel* out) {
  const std::uint8_t* const curve = static_cast<const ShallowCurve*>(refcon)->values;
  *out = {curve[in->alpha], curve[in->red], curve[in->green], curve[in->blue]};
  return PF_Err_NONE;
}

// The 16-bit curve. Values up to white are tabulated before the pass; a brighter one is filled in
// by the first pixel that has it, and racing threads store the same number.
struct DeepCurve {
  LightnessRefcon refcon;
  Buffer<std::uint16_t> upToWhite;
  Buffer<std::uint32_t> aboveWhite;  // Entry v - white: kWorkedOut | result, or 0.

  static constexpr std::uint32_t kWorkedOut = 1U << 16;
};

bool HasAboveWhite(const PF_Pixel16& pixel) {
  constexpr std::uint64_t kTopBits = 0x8000800080008000U;
  std::uint64_t channels = 0;
  std::memcpy(&channels, &pixel, sizeof(channels));
  // In each channel the sum carries into the top bit exactly if a lower bit is set, and never
  // beyond.
  return (((channels & ~kTopBits) + ~kTopBits) & channels & kTopBits) != 0;
}

[[gnu::noinline]] PF_Err LightnessAboveWhite(DeepCurve* curve, const PF_Pixel16& in,
                                             PF_Pixel16* out) {
  const auto bend = [curve](std::uint16_t value) {
    if (value <= PF_MAX_CHAN16) {
      return curve->upToWhite[value];
    }
    std::uint32_t* const place = &curve->aboveWhite[value - PF_MAX_CHAN16];
    std::uint32_t known = __atomic_load_n(place, __ATOMIC_RELAXED);
    if (known == 0) {
      known = DeepCurve::kWorkedOut | BendChannel(curve->refcon, value);
      __atomic_store_n(place, known, __ATOMIC_RELAXED);
    }
    return static_cast<std::uint16_t>(known);
  };
  *out = {bend(in.alpha), bend(in.red), bend(in.green), bend(in.blue)};
  return PF_Err_NONE;
}

PF_Err Lightness16(void* refcon, A_long /*x*/, A_long /*y*/, PF_Pixel16* in, PF_Pixel16* out) {
  auto* const curve = static_cast<DeepCurve*>(refcon);
  if (HasAboveWhite(*in)) [[unlikely]] {
    return LightnessAboveWhite(curve, *in, out);
  }
  const std::uint16_t* const values = curve->upToWhite.data();
  *out = {values[in->alpha], values[in->red], values[in->green], values[in->blue]};
  return PF_Err_NONE;
}

// For a curve that is the identity up to white.
PF_Err LightnessOnlyAboveWhite16(void* refcon, A_long /*x*/, A_long /*y*/, PF_Pixel16* in,
                                 PF_Pixel16* out) {
  if (HasAboveWhite(*in)) [[unlikely]] {
    return LightnessAboveWhite(static_cast<DeepCurve*>(refcon), *in, out);
  }
  *out = *in;
  return PF_Err_NONE;
}

// Tabulates the curve from 0 on. Returns whether it changes any value.
template <typename Channel>
bool FillCurve(const LightnessRefcon& refcon, std::size_t count, Channel* curve) {
  bool changes = false;
  for (std::size_t value = 0; value < count; ++value) {
    curve[value] = BendChannel(refcon, static_cast<Channel>(value));
    changes |= curve[value] != value;
  }
  return changes;
}

}  // namespace

PF_Err RunLightness(const StageCall& call) {
  const PF_ANSICallbacks& maths = call.io.in_data->utils->ansi;
  const LightnessRefcon refcon = {maths.pow(10.0, -double{call.info.lightnessAmount}), &call.io};
  if (IsDeep(*call.io.dst)) {
    DeepCurve curve = {refcon, {}, {}};
    if (!curve.upToWhite.Allocate(PF_MAX_CHAN16 + 1) ||
        !curve.aboveWhite.AllocateZeroed(kValues16 - PF_MAX_CHAN16)) {
      return PF_Err_OUT_OF_MEMORY;
    }
    const bool changes = FillCurve(refcon, curve.upToWhite.size(), curve.upToWhite.data());
    return call.Iterate(CallbackOfDepth(changes ? Lightness16 : LightnessOnlyAboveWhite16), &curve);
  }
  ShallowCurve curve = {refcon, {}};
  const bool changes = FillCurve(refcon, kValues8, curve.values);
  return call.Iterate(CallbackOfDepth(changes ? Lightness8 : Copy8), &curve);
}

}  // namespace vitrell
