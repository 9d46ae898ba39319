// Naming channels.
#include "media/channel_names.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace vitrell::media {
namespace {

// The name of a channel that the file does not have yet, within the layer of the others.
std::string NewName(const Picture& input, const OutputForm& form, const std::string& name) {
  const bool taken =
      std::any_of(form.channels.begin(), form.channels.end(), [&](const OutputChannel& channel) {
        return channel.role == Role::kExtra && input.spec.channel_name(channel.source) == name;
      });
  if (!taken) return name;
  const std::string red = input.spec.channel_name(input.layout.red);
  const std::size_t point = red.rfind('.');
  return (input.layout.IsGrey() ? red : red.substr(0, point)) + "." + name;
}

}  // namespace

void NameChannels(const Picture& input, const OutputForm& form, const Format& format,
                  bool keepTypes, OIIO::ImageSpec& spec) {
  constexpr std::array<const char*, 4> kNames = {"R", "G", "B", "A"};
  const std::vector<OIIO::TypeDesc> oldTypes = spec.channelformats;
  spec.channelnames.clear();
  spec.channelformats.clear();
  spec.nchannels = static_cast<int>(form.channels.size());
  spec.alpha_channel = -1;
  spec.z_channel = -1;
  const bool grey = form.channels.size() < 2 || form.channels[1].role != Role::kGreen;
  const bool keepNames = input.format->windows && format.windows;
  for (std::size_t i = 0; i < form.channels.size(); ++i) {
    const OutputChannel& channel = form.channels[i];
    if (channel.role == Role::kAlpha) spec.alpha_channel = static_cast<int>(i);
    const bool keepsName = channel.role == Role::kExtra || (grey && channel.role == Role::kRed) ||
                           (keepNames && channel.source >= 0 &&
                            (channel.role == Role::kAlpha || !input.layout.IsGrey()));
    spec.channelnames.push_back(
        keepsName ? std::string(input.spec.channel_name(channel.source))
                  : NewName(input, form, kNames.at(static_cast<std::size_t>(channel.role))));
    if (!keepTypes || oldTypes.empty()) continue;
    const int source = channel.source >= 0 ? channel.source : input.layout.red;
    spec.channelformats.push_back(oldTypes.at(static_cast<std::size_t>(source)));
  }
}

}  // namespace vitrell::media
