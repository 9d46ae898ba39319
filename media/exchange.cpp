// Conversions to the effect's pixels, and statistics of its result.
#include "media/exchange.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>

#include "media/original_rows.h"
#include "media/result_rows.h"
#include "media/sample_maths.h"

namespace vitrell::media {
namespace {

// The first sample of a pixel at a position in the frame.
template <typename Sample>
const Sample* SamplesAt(const Picture& picture, const std::vector<Sample>& samples, int x, int y) {
  const Window data = picture.Data();
  const auto row = static_cast<std::size_t>(y - data.y);
  const auto column = static_cast<std::size_t>(x - data.x);
  return samples.data() +
         (row * static_cast<std::size_t>(data.width) + column) * picture.Channels();
}

// Integers with straight alpha: channels are independent, and nothing is clipped.
template <typename Sample, typename Pixel>
void GiveByTable(const Picture& picture, const std::vector<Sample>& samples, Given& given) {
  const auto table =
      TableOf<Sample>([](Sample value) { return HostChannel<Pixel>(Normalised(value)); });
  const ChannelLayout& layout = picture.layout;
  const auto opaque = HostChannel<Pixel>(1.0);
  const Window seen = picture.Seen();
  for (int y = seen.y; y < seen.Bottom(); ++y) {
    const Sample* source = SamplesAt(picture, samples, seen.x, y);
    Pixel* row = RowOf<Pixel>(given.world, y);
    for (int x = seen.x; x < seen.Right(); ++x, source += picture.Channels()) {
      row[x] = {layout.HasAlpha() ? table[source[layout.alpha]] : opaque, table[source[layout.red]],
                table[source[layout.green]], table[source[layout.blue]]};
    }
  }
}

// Half floats with straight alpha: the same, but values below black and above white are counted.
template <typename Pixel>
void GiveHalves(const Picture& picture, const std::vector<half>& samples, Given& given) {
  const auto valueOf = [](std::uint16_t bits) {
    half sample;
    sample.setBits(bits);
    return Normalised(sample);
  };
  const auto table =
      TableOf<std::uint16_t>([&](std::uint16_t bits) { return HostChannel<Pixel>(valueOf(bits)); });
  const auto clipped = TableOf<std::uint16_t>(
      [&](std::uint16_t bits) { return static_cast<char>(NeedsClipping(valueOf(bits)) ? 1 : 0); });
  const ChannelLayout& layout = picture.layout;
  const std::uint16_t white = half(1.0F).bits();
  const Window seen = picture.Seen();
  for (int y = seen.y; y < seen.Bottom(); ++y) {
    const half* source = SamplesAt(picture, samples, seen.x, y);
    Pixel* row = RowOf<Pixel>(given.world, y);
    for (int x = seen.x; x < seen.Right(); ++x, source += picture.Channels()) {
      const std::uint16_t alpha = layout.HasAlpha() ? source[layout.alpha].bits() : white;
      const std::uint16_t red = source[layout.red].bits();
      const std::uint16_t green = source[layout.green].bits();
      const std::uint16_t blue = source[layout.blue].bits();
      const int beyond = clipped[alpha] | clipped[red] | clipped[green] | clipped[blue];
      given.clippedPixels += beyond;
      row[x] = {table[alpha], table[red], table[green], table[blue]};
    }
  }
}

template <typename Sample, typename Pixel>
void Give(const Picture& picture, const std::vector<Sample>& samples, Given& given) {
  if constexpr (std::is_integral_v<Sample>) {
    if (picture.straight) return GiveByTable<Sample, Pixel>(picture, samples, given);
  }
  if constexpr (std::is_same_v<Sample, half>) {
    if (picture.straight) return GiveHalves<Pixel>(picture, samples, given);
  }
  const Window seen = picture.Seen();
  for (int y = seen.y; y < seen.Bottom(); ++y) {
    const Sample* source = SamplesAt(picture, samples, seen.x, y);
    Pixel* row = RowOf<Pixel>(given.world, y);
    for (int x = seen.x; x < seen.Right(); ++x, source += picture.Channels()) {
      const Argb argb = StraightPixel(source, picture.layout, picture.straight);
      if (std::any_of(argb.begin(), argb.end(), NeedsClipping)) ++given.clippedPixels;
      row[x] = {HostChannel<Pixel>(argb[0]), HostChannel<Pixel>(argb[1]),
                HostChannel<Pixel>(argb[2]), HostChannel<Pixel>(argb[3])};
    }
  }
}

template <typename Pixel>
ResultTraits InspectRows(const headless::WorldBuffer& result, const Window& within) {
  ResultTraits traits;
  for (int y = within.y; y < within.Bottom(); ++y) {
    const Pixel* row = RowOf<Pixel>(result, y);
    for (int x = within.x; x < within.Right(); ++x) {
      traits.grey = traits.grey && row[x].red == row[x].green && row[x].green == row[x].blue;
      traits.opaque = traits.opaque && row[x].alpha >= kWhite<Pixel>;
    }
  }
  return traits;
}

template <typename Pixel>
std::int64_t CountVisible(const headless::WorldBuffer& world, const Window& within) {
  std::int64_t count = 0;
  for (int y = within.y; y < within.Bottom(); ++y) {
    const Pixel* row = RowOf<Pixel>(world, y);
    count += std::count_if(row + within.x, row + within.Right(),
                           [](const Pixel& pixel) { return pixel.alpha != 0; });
  }
  return count;
}

template <typename Sample, typename Pixel>
std::int64_t CountClippedAndChangedRows(const Picture& picture, const std::vector<Sample>& samples,
                                        const headless::WorldBuffer& given,
                                        const headless::WorldBuffer& result) {
  std::int64_t count = 0;
  OriginalRows<Sample, Pixel> originals(picture, samples, given);
  const Window seen = picture.Seen();
  for (int y = seen.y; y < seen.Bottom(); ++y) {
    const Sample* source = originals.At(seen.x, y);
    const Pixel* before = RowOf<Pixel>(given, y);
    const Pixel* after = RowOf<Pixel>(result, y);
    for (int x = seen.x; x < seen.Right(); ++x, source += picture.Channels()) {
      if (ChannelsOf(before[x]) == ChannelsOf(after[x])) continue;
      const Argb argb = StraightPixel(source, picture.layout, picture.straight);
      if (std::any_of(argb.begin(), argb.end(), NeedsClipping)) ++count;
    }
  }
  return count;
}

}  // namespace

Given GiveToEffect(const Picture& picture, bool deep) {
  // All pixels are written below.
  Given given{headless::WorldBuffer(picture.Width(), picture.Height(), deep,
                                    {.fresh = headless::FreshPixels::kUnset}),
              0};
  if (picture.Seen() != Window{0, 0, picture.Width(), picture.Height()}) given.world.FillBytes(0);
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

ResultTraits Inspect(const headless::WorldBuffer& result, const Window& within) {
  return result.Deep() ? InspectRows<PF_Pixel16>(result, within)
                       : InspectRows<PF_Pixel>(result, within);
}

Samples TakeFromEffect(const Picture& input, const headless::WorldBuffer& given,
                       const headless::WorldBuffer& result, const OutputForm& form) {
  ResultRows rows(input, given, result, form);
  const auto take = [&]<typename Sample>(Sample /*type*/) -> Samples {
    const auto* const taken = static_cast<const Sample*>(rows.Take(0, rows.Height()));
    return std::vector<Sample>(taken, taken + form.channels.size() *
                                                  static_cast<std::size_t>(rows.Width()) *
                                                  static_cast<std::size_t>(rows.Height()));
  };
  switch (form.type) {
    case SampleType::kByte:
      return take(std::uint8_t{});
    case SampleType::kWord:
      return take(std::uint16_t{});
    case SampleType::kHalf:
      return take(half());
    case SampleType::kFloat:
      break;
  }
  return take(0.0F);
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

std::int64_t CountPaintedBeyondData(const Picture& input, const headless::WorldBuffer& result) {
  const auto count = [&](const Window& within) {
    return result.Deep() ? CountVisible<PF_Pixel16>(result, within)
                         : CountVisible<PF_Pixel>(result, within);
  };
  const Window seen = input.Seen();
  const Window frame{0, 0, input.Width(), input.Height()};
  if (seen == frame) return 0;
  return count(frame) - count(seen);
}

}  // namespace vitrell::media
