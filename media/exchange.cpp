// Conversions between file samples and the effect's pixels.
#include "media/exchange.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>

namespace vitrell::media {
namespace {

// In the order alpha, red, green, blue of the host's pixels.
using Argb = std::array<double, 4>;

template <typename Sample>
double Normalised(Sample sample) {
  if constexpr (std::is_floating_point_v<Sample>) {
    return static_cast<double>(sample);
  } else {
    return static_cast<double>(sample) / std::numeric_limits<Sample>::max();
  }
}

template <typename Sample>
Sample Quantised(double value) {
  if constexpr (std::is_floating_point_v<Sample>) {
    return static_cast<Sample>(value);
  } else {
    constexpr double kWhite = std::numeric_limits<Sample>::max();
    return std::isnan(value) ? Sample{0}
                             : static_cast<Sample>(std::clamp(value, 0.0, 1.0) * kWhite + 0.5);
  }
}

// The file's pixel as straight colours, not clipped.
template <typename Sample>
Argb StraightPixel(const Sample* pixel, const ChannelLayout& layout, bool straight) {
  const double alpha = layout.HasAlpha() ? Normalised(pixel[layout.alpha]) : 1.0;
  Argb argb = {alpha, Normalised(pixel[layout.red]), Normalised(pixel[layout.green]),
               Normalised(pixel[layout.blue])};
  if (!straight && alpha > 0) {
    for (std::size_t i = 1; i < 4; ++i) argb[i] /= alpha;
  }
  return argb;
}

// Also true for NaN. A tiny excess stems from dividing rounded half floats and is no clipping.
bool NeedsClipping(double value) {
  constexpr double kTolerance = 1.0 / 512;
  return !(value >= 0 && value <= 1 + kTolerance);
}

template <typename Pixel>
constexpr double kWhite = std::is_same_v<Pixel, PF_Pixel16> ? 32768 : 255;

template <typename Pixel>
auto HostChannel(double value) {
  using Channel = decltype(Pixel::alpha);
  const double limited = std::isnan(value) ? 0.0 : std::clamp(value, 0.0, 1.0);
  return static_cast<Channel>(limited * kWhite<Pixel> + 0.5);
}

template <typename Pixel>
Pixel* RowOf(headless::WorldBuffer& world, int y) {
  return reinterpret_cast<Pixel*>(world.Row(y));
}

template <typename Pixel>
const Pixel* RowOf(const headless::WorldBuffer& world, int y) {
  return reinterpret_cast<const Pixel*>(world.Row(y));
}

template <typename Pixel>
auto ChannelsOf(const Pixel& pixel) {
  return std::array{pixel.alpha, pixel.red, pixel.green, pixel.blue};
}

template <typename Sample, typename Pixel>
void Give(const Picture& picture, const std::vector<Sample>& samples, Given& given) {
  const Sample* source = samples.data();
  for (int y = 0; y < picture.Height(); ++y) {
    Pixel* row = RowOf<Pixel>(given.world, y);
    for (int x = 0; x < picture.Width(); ++x, source += picture.Channels()) {
      const Argb argb = StraightPixel(source, picture.layout, picture.straight);
      if (std::any_of(argb.begin(), argb.end(), NeedsClipping)) ++given.clippedPixels;
      row[x] = {HostChannel<Pixel>(argb[0]), HostChannel<Pixel>(argb[1]),
                HostChannel<Pixel>(argb[2]), HostChannel<Pixel>(argb[3])};
    }
  }
}

template <typename Pixel>
ResultTraits InspectRows(const headless::WorldBuffer& result) {
  ResultTraits traits;
  for (int y = 0; y < result.Height(); ++y) {
    const Pixel* row = RowOf<Pixel>(result, y);
    for (int x = 0; x < result.Width(); ++x) {
      traits.grey = traits.grey && row[x].red == row[x].green && row[x].green == row[x].blue;
      traits.opaque = traits.opaque && row[x].alpha >= kWhite<Pixel>;
    }
  }
  return traits;
}

template <typename Sample, typename Pixel>
std::int64_t CountClippedAndChangedRows(const Picture& picture, const std::vector<Sample>& samples,
                                        const headless::WorldBuffer& given,
                                        const headless::WorldBuffer& result) {
  std::int64_t count = 0;
  const Sample* source = samples.data();
  for (int y = 0; y < picture.Height(); ++y) {
    const Pixel* before = RowOf<Pixel>(given, y);
    const Pixel* after = RowOf<Pixel>(result, y);
    for (int x = 0; x < picture.Width(); ++x, source += picture.Channels()) {
      if (ChannelsOf(before[x]) == ChannelsOf(after[x])) continue;
      const Argb argb = StraightPixel(source, picture.layout, picture.straight);
      if (std::any_of(argb.begin(), argb.end(), NeedsClipping)) ++count;
    }
  }
  return count;
}

// Turns one pixel into the samples of the output.
template <typename Sample, typename Pixel, typename Out>
class PixelTaker {
 public:
  PixelTaker(const Picture& input, const OutputForm& form) : input_(input), form_(form) {}

  void Take(const Sample* file, const Pixel& given, const Pixel& result, Out* out) const {
    const auto before = ChannelsOf(given);
    const auto after = ChannelsOf(result);
    const Argb original = StraightPixel(file, input_.layout, input_.straight);
    Argb straight{};
    std::array<bool, 4> kept{};
    const bool wholeKept = before == after;
    for (std::size_t i = 0; i < 4; ++i) {
      kept[i] = wholeKept || (before[i] == after[i] && !NeedsClipping(original[i]));
      straight[i] = kept[i] ? original[i] : after[i] / kWhite<Pixel>;
    }
    const double alpha = std::min(straight[0], 1.0);
    for (const OutputChannel& channel : form_.channels) {
      *out++ = Stored(channel, file, straight, alpha, kept);
    }
  }

 private:
  Out Stored(const OutputChannel& channel, const Sample* file, const Argb& straight, double alpha,
             const std::array<bool, 4>& kept) const {
    if (channel.role == Role::kExtra) return Quantised<Out>(Normalised(file[channel.source]));
    const std::size_t i = PositionOf(channel.role);
    const bool sameForm = input_.straight == form_.straight || !input_.layout.HasAlpha();
    const bool alphaKept = form_.straight || i == 0 || kept[0];
    if (channel.source >= 0 && kept[i] && alphaKept && sameForm) {
      return Quantised<Out>(Normalised(file[channel.source]));
    }
    return Quantised<Out>(form_.straight || i == 0 ? straight[i] : straight[i] * alpha);
  }

  static std::size_t PositionOf(Role role) {
    switch (role) {
      case Role::kRed:
        return 1;
      case Role::kGreen:
        return 2;
      case Role::kBlue:
        return 3;
      default:
        return 0;
    }
  }

  const Picture& input_;
  const OutputForm& form_;
};

template <typename Sample, typename Pixel, typename Out>
std::vector<Out> TakeRows(const Picture& input, const std::vector<Sample>& samples,
                          const headless::WorldBuffer& given, const headless::WorldBuffer& result,
                          const OutputForm& form) {
  const std::size_t pixels =
      static_cast<std::size_t>(input.Width()) * static_cast<std::size_t>(input.Height());
  std::vector<Out> taken(pixels * form.channels.size());
  const PixelTaker<Sample, Pixel, Out> taker(input, form);
  const Sample* file = samples.data();
  Out* out = taken.data();
  for (int y = 0; y < input.Height(); ++y) {
    const Pixel* before = RowOf<Pixel>(given, y);
    const Pixel* after = RowOf<Pixel>(result, y);
    for (int x = 0; x < input.Width(); ++x) {
      taker.Take(file, before[x], after[x], out);
      file += input.Channels();
      out += form.channels.size();
    }
  }
  return taken;
}

template <typename Sample, typename Pixel>
Samples TakeAs(const Picture& input, const std::vector<Sample>& samples,
               const headless::WorldBuffer& given, const headless::WorldBuffer& result,
               const OutputForm& form) {
  switch (form.type) {
    case SampleType::kByte:
      return TakeRows<Sample, Pixel, uint8_t>(input, samples, given, result, form);
    case SampleType::kWord:
      return TakeRows<Sample, Pixel, uint16_t>(input, samples, given, result, form);
    case SampleType::kFloat:
      break;
  }
  return TakeRows<Sample, Pixel, float>(input, samples, given, result, form);
}

}  // namespace

Given GiveToEffect(const Picture& picture, bool deep) {
  Given given{headless::WorldBuffer(picture.Width(), picture.Height(), deep), 0};
  std::visit(
      [&](const auto& samples) {
        using Sample = typename std::decay_t<decltype(samples)>::value_type;
        if (deep) {
          Give<Sample, PF_Pixel16>(picture, samples, given);
        } else {
          Give<Sample, PF_Pixel>(picture, samples, given);
        }
      },
      picture.samples);
  return given;
}

ResultTraits Inspect(const headless::WorldBuffer& result) {
  return result.Deep() ? InspectRows<PF_Pixel16>(result) : InspectRows<PF_Pixel>(result);
}

Samples TakeFromEffect(const Picture& input, const headless::WorldBuffer& given,
                       const headless::WorldBuffer& result, const OutputForm& form) {
  return std::visit(
      [&](const auto& samples) {
        using Sample = typename std::decay_t<decltype(samples)>::value_type;
        return result.Deep() ? TakeAs<Sample, PF_Pixel16>(input, samples, given, result, form)
                             : TakeAs<Sample, PF_Pixel>(input, samples, given, result, form);
      },
      input.samples);
}

std::int64_t CountClippedAndChanged(const Picture& input, const headless::WorldBuffer& given,
                                    const headless::WorldBuffer& result) {
  return std::visit(
      [&](const auto& samples) {
        using Sample = typename std::decay_t<decltype(samples)>::value_type;
        return result.Deep()
                   ? CountClippedAndChangedRows<Sample, PF_Pixel16>(input, samples, given, result)
                   : CountClippedAndChangedRows<Sample, PF_Pixel>(input, samples, given, result);
      },
      input.samples);
}

}  // namespace vitrell::media
