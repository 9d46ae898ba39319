// Samples told from the effect's pixels.
#include "media/original_rows.h"

#include <limits>
#include <type_traits>
#include <variant>

#include "media/sample_maths.h"

namespace vitrell::media {
namespace {

constexpr std::size_t kBits = 64;

std::size_t WordsInRow(const Picture& picture) {
  return (static_cast<std::size_t>(picture.spec.width) * picture.Channels() + kBits - 1) / kBits;
}

// For each channel value of the given world the lowest sample that becomes it.
template <typename Sample, typename Pixel>
std::vector<Sample> LowestSamples() {
  if constexpr (std::is_integral_v<Sample>) {
    std::vector<Sample> lowest(static_cast<std::size_t>(kWhite<Pixel>) + 1);
    for (unsigned value = std::numeric_limits<Sample>::max() + 1U; value-- > 0;) {
      const auto sample = static_cast<Sample>(value);
      lowest[HostChannel<Pixel>(Normalised(sample))] = sample;
    }
    return lowest;
  } else {
    return {};
  }
}

// A sample is the lowest of those that become its value, or else the next one, which a bit tells:
// white is 65535 in the file and 32768 in the effect.
std::vector<std::uint64_t> FindBits(const Picture& picture,
                                    const std::vector<std::uint16_t>& samples,
                                    const headless::WorldBuffer& given) {
  const std::vector<std::uint16_t> lowest = LowestSamples<std::uint16_t, PF_Pixel16>();
  const std::vector<std::size_t> places = HostPlaces(picture);
  const std::size_t words = WordsInRow(picture);
  std::vector<std::uint64_t> bits(words * static_cast<std::size_t>(picture.spec.height));
  const std::uint16_t* sample = samples.data();
  for (int y = 0; y < picture.spec.height; ++y) {
    const PF_Pixel16* const row = RowOf<PF_Pixel16>(given, y);
    std::uint64_t* const rowBits = bits.data() + words * static_cast<std::size_t>(y);
    std::size_t at = 0;
    for (int x = 0; x < picture.spec.width; ++x) {
      const auto channels = ChannelsOf(row[x]);
      for (const std::size_t place : places) {
        const std::uint64_t bit = *sample++ != lowest[channels[place]] ? 1 : 0;
        rowBits[at / kBits] |= bit << at % kBits;
        ++at;
      }
    }
  }
  return bits;
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
  if (auto* const bytes = std::get_if<std::vector<std::uint8_t>>(&picture.samples)) {
    *bytes = std::vector<std::uint8_t>();
    picture.released = true;
  } else if (auto* const words = std::get_if<std::vector<std::uint16_t>>(&picture.samples)) {
    // In 8 bits too much is gone.
    if (!given.Deep()) return;
    picture.releasedBits = FindBits(picture, *words, given);
    *words = std::vector<std::uint16_t>();
    picture.released = true;
  }
}

template <typename Sample, typename Pixel>
OriginalRows<Sample, Pixel>::OriginalRows(const Picture& picture,
                                          const std::vector<Sample>& samples,
                                          const headless::WorldBuffer& given)
    : picture_(picture), samples_(samples), given_(given), data_(picture.Data()) {
  if (!picture.released) return;
  places_ = HostPlaces(picture);
  lowest_ = LowestSamples<Sample, Pixel>();
  rebuilt_.resize(static_cast<std::size_t>(picture.spec.width) * picture.Channels());
}

template <typename Sample, typename Pixel>
void OriginalRows<Sample, Pixel>::Rebuild(int y) {
  row_ = y;
  if constexpr (std::is_integral_v<Sample>) {
    const Pixel* const row = RowOf<Pixel>(given_, y);
    Sample* sample = rebuilt_.data();
    for (int x = 0; x < picture_.spec.width; ++x) {
      const auto channels = ChannelsOf(row[x]);
      for (const std::size_t place : places_) *sample++ = lowest_[channels[place]];
    }
    if (picture_.releasedBits.empty()) return;
    const std::uint64_t* const bits =
        picture_.releasedBits.data() + WordsInRow(picture_) * static_cast<std::size_t>(y);
    for (std::size_t at = 0; at < rebuilt_.size(); ++at) {
      const auto bit = static_cast<Sample>(bits[at / kBits] >> at % kBits & 1U);
      rebuilt_[at] = static_cast<Sample>(rebuilt_[at] + bit);
    }
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
