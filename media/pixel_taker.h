// Makes one pixel of the output from the file's samples and the effect's pixels; for
// result_rows.cpp.
#ifndef VITRELL_MEDIA_PIXEL_TAKER_H_
#define VITRELL_MEDIA_PIXEL_TAKER_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "media/exchange.h"
#include "media/picture.h"
#include "media/sample_maths.h"

namespace vitrell::media {

// The place of a role among the host's channels; extra ones have none.
constexpr int kNoPlace = -1;

inline int PlaceOf(Role role) {
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
  return kNoPlace;
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
    if (channel.role == Role::kExtra) return Converted<Out>(file[channel.source]);
    const auto i = static_cast<std::size_t>(PlaceOf(channel.role));
    const bool sameForm = input_.straight == form_.straight || !input_.layout.HasAlpha();
    const bool alphaKept = form_.straight || i == 0 || kept[0];
    if (channel.source >= 0 && kept[i] && alphaKept && sameForm) {
      return Converted<Out>(file[channel.source]);
    }
    return Quantised<Out>(form_.straight || i == 0 ? straight[i] : straight[i] * alpha);
  }

  const Picture& input_;
  const OutputForm& form_;
  const std::vector<Sample> none_;
};

// The fast case, straight colours of one sample type in file and output: each channel is either
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
    const bool wholeKept = before == after;
    for (const Place& place : places_) {
      const auto i = static_cast<std::size_t>(place.channel);
      const Sample original = file[place.source];
      const bool kept = wholeKept || place.channel == kNoPlace ||
                        (before[i] == after[i] && !WasClipped(original));
      *out++ = kept ? original : table_[after[i]];
    }
    return out;
  }

 private:
  struct Place {
    int source;
    int channel;  // of the host's pixel, or kNoPlace
  };

  static bool WasClipped(Sample sample) {
    if constexpr (kIsFloat<Sample>) {
      return NeedsClipping(Normalised(sample));
    } else {
      return false;
    }
  }

  std::vector<Place> places_;
  std::vector<Sample> table_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_PIXEL_TAKER_H_
