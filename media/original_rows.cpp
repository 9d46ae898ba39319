// Samples told from the effect's pixels.
#include "media/original_rows.h"

#include <bit>
#include <limits>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

#include "media/sample_maths.h"

namespace vitrell::media {
namespace {

constexpr std::size_t kBits = 64;

std::size_t WordsInRow(const Picture& picture) {
  return (static_cast<std::size_t>(picture.spec.width) * picture.Channels() + kBits - 1) / kBits;
}

// For each channel value of the given world the sample that it usually stands for: of integers the
// lowest one that becomes it, of half floats the value itself, which they hold exactly wherever
// more than one becomes it.
template <typename Sample, typename Pixel>
std::vector<Sample> UsualSamples() {
  const auto values = static_cast<unsigned>(kWhite<Pixel>) + 1;
  std::vector<Sample> usual(values);
  if constexpr (std::is_integral_v<Sample>) {
    for (unsigned value = std::numeric_limits<Sample>::max() + 1U; value-- > 0;) {
      const auto sample = static_cast<Sample>(value);
      usual[HostChannel<Pixel>(Normalised(sample))] = sample;
    }
  } else {
    for (unsigned value = 0; value < values; ++value) {
      usual[value] = static_cast<Sample>(static_cast<float>(value / kWhite<Pixel>));
    }
  }
  return usual;
}

bool IsSame(std::uint16_t a, std::uint16_t b) { return a == b; }
// Bit by bit: a negative zero is another sample than zero.
bool IsSame(half a, half b) { return a.bits() == b.bits(); }

// Empty where so many half floats are other ones than usual that keeping them gains little.
template <typename Sample>
std::optional<ReleasedSamples> FindOthers(const Picture& picture,
                                          const std::vector<Sample>& samples,
                                          const headless::WorldBuffer& given) {
  const std::vector<Sample> usual = UsualSamples<Sample, PF_Pixel16>();
  const std::vector<std::size_t> places = HostPlaces(picture);
  const std::size_t words = WordsInRow(picture);
  ReleasedSamples released;
  released.others.resize(words * static_cast<std::size_t>(picture.spec.height));
  const Sample* sample = samples.data();
  for (int y = 0; y < picture.spec.height; ++y) {
    const PF_Pixel16* const row = RowOf<PF_Pixel16>(given, y);
    std::uint64_t* const bits = released.others.data() + words * static_cast<std::size_t>(y);
    released.firstOfRow.push_back(released.halves.size());
    if (released.halves.size() > samples.size() / 2) return std::nullopt;
    std::size_t at = 0;
    for (int x = 0; x < picture.spec.width; ++x) {
      const auto channels = ChannelsOf(row[x]);
      for (const std::size_t place : places) {
        const std::uint64_t other = IsSame(*sample, usual[channels[place]]) ? 0 : 1;
        bits[at / kBits] |= other << at % kBits;
        if constexpr (std::is_same_v<Sample, half>) {
          if (other != 0) released.halves.push_back(*sample);
        }
        ++sample;
        ++at;
      }
    }
  }
  released.halves.shrink_to_fit();
  return released;
}

// Integers: where not the lowest sample, then the next one. White is 65535 in the file and 32768 in
// the effect, so that no value has three.
void Restore(const ReleasedSamples& /*released*/, std::size_t /*row*/, const std::uint64_t* bits,
             std::vector<std::uint16_t>& samples) {
  for (std::size_t at = 0; at < samples.size(); ++at) {
    const auto bit = static_cast<std::uint16_t>(bits[at / kBits] >> at % kBits & 1U);
    samples[at] = static_cast<std::uint16_t>(samples[at] + bit);
  }
}

void Restore(const ReleasedSamples& released, std::size_t row, const std::uint64_t* bits,
             std::vector<half>& samples) {
  const half* other = released.halves.data() + released.firstOfRow[row];
  for (std::size_t at = 0; at < samples.size(); at += kBits, ++bits) {
    for (std::uint64_t left = *bits; left != 0; left &= left - 1) {
      samples[at + static_cast<std::size_t>(std::countr_zero(left))] = *other++;
    }
  }
}

}  // namespace

std::vector<std::size_t> HostPlaces(const Picture& picture) {
  const ChannelLayout& layout = picture.layout;
  std::vector<std::size_t> places;
  for (int channel = 0; channel < picture.spec.nchannels; ++channel) {
    if (channel == layout.alpha) {
      places.push_back(0);
    } else if (channel == layout.red) {
      places.push_back(1);
    } else if (channel == layout.green) {
      places.push_back(2);
    } else if (channel == layout.blue) {
      places.push_back(3);
    } else {
      return {};
    }
  }
  return places;
}

void ReleaseSamples(Picture& picture, const headless::WorldBuffer& given) {
  const Window frame{0, 0, picture.Width(), picture.Height()};
  if (!picture.straight || picture.Data() != frame || HostPlaces(picture).empty()) return;
  picture.released = std::visit(
      [&](const auto& samples) -> std::optional<ReleasedSamples> {
        using Sample = typename std::decay_t<decltype(samples)>::value_type;
        if constexpr (std::is_same_v<Sample, std::uint8_t>) return ReleasedSamples();
        if constexpr (std::is_same_v<Sample, std::uint16_t> || std::is_same_v<Sample, half>) {
          // In 8 bits too much is gone.
          if (given.Deep()) return FindOthers(picture, samples, given);
        }
        return std::nullopt;
      },
      picture.samples);
  if (!picture.released) return;
  std::visit([](auto& samples) { samples = std::decay_t<decltype(samples)>(); }, picture.samples);
}

template <typename Sample, typename Pixel>
OriginalRows<Sample, Pixel>::OriginalRows(const Picture& picture,
                                          const std::vector<Sample>& samples,
                                          const headless::WorldBuffer& given)
    : picture_(picture), samples_(samples), given_(given), data_(picture.Data()) {
  if (!picture.released) return;
  places_ = HostPlaces(picture);
  usual_ = UsualSamples<Sample, Pixel>();
  rebuilt_.resize(static_cast<std::size_t>(picture.spec.width) * picture.Channels());
}

template <typename Sample, typename Pixel>
void OriginalRows<Sample, Pixel>::Rebuild(int y) {
  row_ = y;
  const Pixel* const row = RowOf<Pixel>(given_, y);
  Sample* sample = rebuilt_.data();
  for (int x = 0; x < picture_.spec.width; ++x) {
    const auto channels = ChannelsOf(row[x]);
    for (const std::size_t place : places_) *sample++ = usual_[channels[place]];
  }
  if constexpr (std::is_same_v<Sample, std::uint16_t> || std::is_same_v<Sample, half>) {
    const ReleasedSamples& released = *picture_.released;
    if (released.others.empty()) return;
    const auto index = static_cast<std::size_t>(y);
    Restore(released, index, released.others.data() + WordsInRow(picture_) * index, rebuilt_);
  }
}

template class OriginalRows<std::uint8_t, PF_Pixel>;
template class OriginalRows<std::uint8_t, PF_Pixel16>;
template class OriginalRows<std::uint16_t, PF_Pixel>;
template class OriginalRows<std::uint16_t, PF_Pixel16>;
template class OriginalRows<half, PF_Pixel>;
template class OriginalRows<half, PF_Pixel16>;
template class OriginalRows<float, PF_Pixel>;
template class OriginalRows<float, PF_Pixel16>;

}  // namespace vitrell::media
