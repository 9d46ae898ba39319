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

// The first sample of a pixel; its place is that in the frame.
template <typename Sample>
const Sample* SamplesAt(const Picture& picture, const std::vector<Sample>& samples, int x, int y) {
  const Window data = picture.Data();
  const auto row = static_cast<std::size_t>(y - data.y);
  const auto column = static_cast<std::size_t>(x - data.x);
  return samples.data() +
         (row * static_cast<std::size_t>(data.width) + column) * picture.Channels();
}

// Every value of an integer type through a function, worked out once.
template <typename From, typename Function>
auto TableOf(const Function& function) {
  std::vector<decltype(function(From{}))> table;
  table.reserve(std::size_t{std::numeric_limits<From>::max()} + 1);
  for (unsigned value = 0; value <= std::numeric_limits<From>::max(); ++value) {
    table.push_back(function(static_cast<From>(value)));
  }
  return table;
}

// Straight integers: no channel depends on another, and nothing is clipped.
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

template <typename Sample, typename Pixel>
void Give(const Picture& picture, const std::vector<Sample>& samples, Given& given) {
  if constexpr (std::is_integral_v<Sample>) {
    if (picture.straight) return GiveByTable<Sample, Pixel>(picture, samples, given);
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
  const Window seen = picture.Seen();
  for (int y = seen.y; y < seen.Bottom(); ++y) {
    const Sample* source = SamplesAt(picture, samples, seen.x, y);
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

// Turns one pixel into the samples of the output.
template <typename Sample, typename Pixel, typename Out>
class PixelTaker {
 public:
  PixelTaker(const Picture& input, const OutputForm& form)
      : input_(input), form_(form), none_(input.Channels()) {}

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
    Store(file, straight, kept, out);
  }

  // A pixel that the effect did not see.
  void TakeUnseen(const Sample* file, Out* out) const {
    Store(file, StraightPixel(file, input_.layout, input_.straight), {true, true, true, true}, out);
  }

  // A pixel that the file does not hold.
  void TakeNew(const Pixel& result, Out* out) const {
    const auto channels = ChannelsOf(result);
    Argb straight{};
    for (std::size_t i = 0; i < 4; ++i) straight[i] = channels[i] / kWhite<Pixel>;
    Store(none_.data(), straight, {}, out);
  }

 private:
  void Store(const Sample* file, const Argb& straight, const std::array<bool, 4>& kept,
             Out* out) const {
    const double alpha = std::min(straight[0], 1.0);
    for (const OutputChannel& channel : form_.channels) {
      *out++ = Stored(channel, file, straight, alpha, kept);
    }
  }

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
  const std::vector<Sample> none_;
};

// Where the file and the output hold the same integers, straight, each channel is by itself either
// the file's or the effect's.
template <typename Sample, typename Pixel>
class PlainTaker {
 public:
  PlainTaker(const Picture& input, const OutputForm& form) {
    const bool alone = (input.straight && form.straight) || !input.layout.HasAlpha();
    if (!alone || !form.straight) return;
    for (const OutputChannel& channel : form.channels) {
      if (channel.source < 0) return;
      places_.push_back({channel.source, PlaceOf(channel.role)});
    }
    using Channel = decltype(Pixel::alpha);
    table_ =
        TableOf<Channel>([](Channel value) { return Quantised<Sample>(value / kWhite<Pixel>); });
  }

  bool Suits() const { return !table_.empty(); }

  Sample* Take(const Sample* file, const Pixel& given, const Pixel& result, Sample* out) const {
    const auto before = ChannelsOf(given);
    const auto after = ChannelsOf(result);
    for (const Place& place : places_) {
      const auto i = static_cast<std::size_t>(place.channel);
      const bool kept = place.channel < 0 || before[i] == after[i];
      *out++ = kept ? file[place.source] : table_[after[i]];
    }
    return out;
  }

 private:
  struct Place {
    int source;
    int channel;  // of the host's pixel; -1: none
  };

  static int PlaceOf(Role role) {
    switch (role) {
      case Role::kAlpha:
        return 0;
      case Role::kRed:
        return 1;
      case Role::kGreen:
        return 2;
      case Role::kBlue:
        return 3;
      case Role::kExtra:
        break;
    }
    return -1;
  }

  std::vector<Place> places_;
  std::vector<Sample> table_;
};

template <typename Sample, typename Pixel, typename Out>
class RowTaker {
 public:
  RowTaker(const Picture& input, const std::vector<Sample>& samples,
           const headless::WorldBuffer& given, const headless::WorldBuffer& result,
           const OutputForm& form)
      : input_(input),
        samples_(samples),
        given_(given),
        result_(result),
        form_(form),
        seen_(input.Seen()),
        window_(form.wholeFrame ? Window{0, 0, input.Width(), input.Height()} : input.Data()),
        taker_(input, form),
        plain_(input, form) {}

  std::vector<Out> TakeAll() const {
    const std::size_t row = static_cast<std::size_t>(window_.width) * form_.channels.size();
    std::vector<Out> taken(row * static_cast<std::size_t>(window_.height));
    Out* out = taken.data();
    for (int y = window_.y; y < window_.Bottom(); ++y, out += row) TakeRow(y, out);
    return taken;
  }

 private:
  void TakeRow(int y, Out* out) const {
    const bool crossesSeen = y >= seen_.y && y < seen_.Bottom() && seen_.width > 0;
    const int left = crossesSeen ? seen_.x : window_.Right();
    const int right = crossesSeen ? seen_.Right() : window_.Right();
    out = TakeOutside(y, window_.x, left, out);
    out = TakeSeen(y, left, right, out);
    TakeOutside(y, right, window_.Right(), out);
  }

  Out* TakeSeen(int y, int begin, int end, Out* out) const {
    if (begin >= end) return out;
    const Sample* file = SamplesAt(input_, samples_, begin, y);
    const Pixel* before = RowOf<Pixel>(given_, y);
    const Pixel* after = RowOf<Pixel>(result_, y);
    if constexpr (std::is_same_v<Sample, Out> && std::is_integral_v<Sample>) {
      if (plain_.Suits()) {
        for (int x = begin; x < end; ++x, file += input_.Channels()) {
          out = plain_.Take(file, before[x], after[x], out);
        }
        return out;
      }
    }
    for (int x = begin; x < end; ++x) {
      taker_.Take(file, before[x], after[x], out);
      file += input_.Channels();
      out += form_.channels.size();
    }
    return out;
  }

  // What only the effect knows, or what only the file knows.
  Out* TakeOutside(int y, int begin, int end, Out* out) const {
    for (int x = begin; x < end; ++x, out += form_.channels.size()) {
      if (form_.wholeFrame) {
        taker_.TakeNew(RowOf<Pixel>(result_, y)[x], out);
      } else {
        taker_.TakeUnseen(SamplesAt(input_, samples_, x, y), out);
      }
    }
    return out;
  }

  const Picture& input_;
  const std::vector<Sample>& samples_;
  const headless::WorldBuffer& given_;
  const headless::WorldBuffer& result_;
  const OutputForm& form_;
  const Window seen_;
  const Window window_;
  const PixelTaker<Sample, Pixel, Out> taker_;
  const PlainTaker<Sample, Pixel> plain_;
};

template <typename Sample, typename Pixel>
Samples TakeAs(const Picture& input, const std::vector<Sample>& samples,
               const headless::WorldBuffer& given, const headless::WorldBuffer& result,
               const OutputForm& form) {
  switch (form.type) {
    case SampleType::kByte:
      return RowTaker<Sample, Pixel, uint8_t>(input, samples, given, result, form).TakeAll();
    case SampleType::kWord:
      return RowTaker<Sample, Pixel, uint16_t>(input, samples, given, result, form).TakeAll();
    case SampleType::kFloat:
      break;
  }
  return RowTaker<Sample, Pixel, float>(input, samples, given, result, form).TakeAll();
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
