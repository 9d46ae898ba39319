// Finding parts and channels by name.
#include "media/selection.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "media/failure.h"

namespace vitrell::media {
namespace {

// Longer lists would bury the message.
constexpr std::size_t kMostListed = 100;

std::string Listed(const std::vector<std::string>& names) {
  std::string list;
  for (std::size_t i = 0; i < std::min(names.size(), kMostListed); ++i) {
    if (i > 0) list += ", ";
    list += names[i];
  }
  if (names.size() > kMostListed) list += ", ...";
  return list;
}

std::string Lowered(std::string_view text) {
  std::string lowered(text);
  std::transform(lowered.begin(), lowered.end(), lowered.begin(),
                 [](char c) { return static_cast<char>(std::tolower(c & 0xff)); });
  return lowered;
}

std::vector<std::string> Split(const std::string& text) {
  std::vector<std::string> names;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    names.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return names;
}

[[noreturn]] void FailAsUnknown(const std::filesystem::path& file, const std::string& wanted,
                                const OIIO::ImageSpec& spec) {
  throw Failure(kWrongUsage, file.string() + ": has no channels \"" + wanted +
                                 "\". Give one, three or four of " + Listed(spec.channelnames) +
                                 ", or what stands before the last point of a layer's channels.");
}

// Channel suffixes that make up a colour, in order; normals and positions are rendered as colours.
struct Suffixes {
  std::array<std::string_view, 3> colour;
  std::string_view alpha;
};
constexpr std::array kSuffixes = {Suffixes{{"r", "g", "b"}, "a"},
                                  Suffixes{{"red", "green", "blue"}, "alpha"},
                                  Suffixes{{"x", "y", "z"}, ""}};

// By its own name within the layer, in any case.
std::optional<int> ChannelOf(const OIIO::ImageSpec& spec, const std::string& layer,
                             std::string_view suffix) {
  for (int channel = 0; channel < spec.nchannels; ++channel) {
    const std::string name = spec.channel_name(channel);
    if (name.size() == layer.size() + 1 + suffix.size() && name.starts_with(layer + ".") &&
        Lowered(name.substr(layer.size() + 1)) == suffix) {
      return channel;
    }
  }
  return std::nullopt;
}

std::optional<ChannelLayout> LayerNamed(const OIIO::ImageSpec& spec, const std::string& layer) {
  for (const Suffixes& suffixes : kSuffixes) {
    const auto red = ChannelOf(spec, layer, suffixes.colour[0]);
    const auto green = ChannelOf(spec, layer, suffixes.colour[1]);
    const auto blue = ChannelOf(spec, layer, suffixes.colour[2]);
    if (!red || !green || !blue) continue;
    return ChannelLayout{*red, *green, *blue, ChannelOf(spec, layer, suffixes.alpha).value_or(-1)};
  }
  return std::nullopt;
}

}  // namespace

int FindPart(OIIO::ImageInput& input, const Format& format, const std::string& wanted,
             const std::filesystem::path& file) {
  if (wanted.empty()) return 0;
  std::vector<std::string> parts;
  // Of WebP only the first can be read.
  const int most = format.plugin == "webp" ? 1 : std::numeric_limits<int>::max();
  for (int part = 0; part < most && input.seek_subimage(part, 0); ++part) {
    const std::string name(input.spec().get_string_attribute("oiio:subimagename"));
    if (name == wanted) return part;
    parts.push_back(std::to_string(part) + (name.empty() ? "" : " " + name));
  }
  // Clear the error of seeking past the last part.
  static_cast<void>(input.geterror());
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(wanted.data(), wanted.data() + wanted.size(), number);
  if (error == std::errc() && end == wanted.data() + wanted.size() && number < parts.size()) {
    return static_cast<int>(number);
  }
  throw Failure(kWrongUsage, file.string() + ": has no part \"" + wanted +
                                 "\". Give the name or number of one of these: " + Listed(parts) +
                                 ".");
}

ChannelLayout ChooseChannels(const OIIO::ImageSpec& spec, const std::string& wanted,
                             const std::filesystem::path& file) {
  if (wanted.empty()) return FindChannels(spec);
  if (spec.channelindex(wanted) < 0) {
    if (const auto layer = LayerNamed(spec, wanted)) return *layer;
  }
  std::vector<int> channels;
  for (const std::string& name : Split(wanted)) {
    channels.push_back(spec.channelindex(name));
    if (channels.back() < 0) FailAsUnknown(file, wanted, spec);
    if (std::count(channels.begin(), channels.end(), channels.back()) > 1) {
      throw Failure(kWrongUsage,
                    file.string() + ": the channel " + name + " is named twice. Name it once.");
    }
  }
  switch (channels.size()) {
    case 1:
      return {channels[0], channels[0], channels[0], -1};
    case 2:
      return {channels[0], channels[0], channels[0], channels[1]};
    case 3:
      return {channels[0], channels[1], channels[2], -1};
    case 4:
      return {channels[0], channels[1], channels[2], channels[3]};
    default:
      FailAsUnknown(file, wanted, spec);
  }
}

}  // namespace vitrell::media
