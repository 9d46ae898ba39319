// Channels, compression and attributes of a rendered EXR part.
#include "media/exr_header.h"

#include <ImfChannelList.h>
#include <ImfCompression.h>
#include <ImfPartType.h>
#include <ImfStringAttribute.h>
#include <ImfTileDescription.h>
#include <half.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include "media/fingerprint.h"

namespace vitrell::media {
namespace {

Imf::PixelType TypeOf(const OIIO::ImageSpec& spec, std::size_t channel) {
  const OIIO::TypeDesc type =
      spec.channelformats.empty() ? spec.format : spec.channelformats.at(channel);
  if (type == OIIO::TypeDesc::UINT32) return Imf::UINT;
  return type.is_floating_point() && type.size() > sizeof(half) ? Imf::FLOAT : Imf::HALF;
}

void SetCompression(const Picture& input, const OIIO::ImageSpec& spec, Imf::Header& header) {
  constexpr std::array<std::pair<std::string_view, Imf::Compression>, 10> kNames = {
      {{"none", Imf::NO_COMPRESSION},
       {"rle", Imf::RLE_COMPRESSION},
       {"zip", Imf::ZIP_COMPRESSION},
       {"zips", Imf::ZIPS_COMPRESSION},
       {"piz", Imf::PIZ_COMPRESSION},
       {"pxr24", Imf::PXR24_COMPRESSION},
       {"b44", Imf::B44_COMPRESSION},
       {"b44a", Imf::B44A_COMPRESSION},
       {"dwaa", Imf::DWAA_COMPRESSION},
       {"dwab", Imf::DWAB_COMPRESSION}}};
  const std::string wanted(spec.get_string_attribute("compression", "zip"));
  if (wanted == input.spec.get_string_attribute("compression")) return;
  const std::size_t colon = std::min(wanted.find(':'), wanted.size());
  for (const auto& [name, compression] : kNames) {
    if (name == wanted.substr(0, colon)) header.compression() = compression;
  }
  if (colon < wanted.size()) {
    header.dwaCompressionLevel() = std::strtof(wanted.c_str() + colon + 1, nullptr);
  }
}

}  // namespace

bool IsTiled(const Imf::Header& header) { return header.type() == Imf::TILEDIMAGE; }

Imf::Header RenderedHeader(const Picture& input, const OIIO::ImageSpec& spec,
                           const OutputForm& form, Imf::Header header) {
  Imf::ChannelList channels;
  for (std::size_t i = 0; i < form.channels.size(); ++i) {
    const OutputChannel& channel = form.channels[i];
    const Imf::Channel* old =
        channel.source < 0 ? nullptr
                           : header.channels().findChannel(input.spec.channel_name(channel.source));
    Imf::Channel made = old == nullptr ? Imf::Channel() : *old;
    if (channel.role != Role::kExtra) made.type = TypeOf(spec, i);
    channels.insert(spec.channelnames.at(i), made);
  }
  header.channels() = channels;
  if (IsTiled(header)) {
    header.tileDescription().mode = Imf::ONE_LEVEL;
  } else {
    header.erase("tiles");
  }
  header.lineOrder() = Imf::INCREASING_Y;
  header.erase("chunkCount");
  SetCompression(input, spec, header);
  header.erase(kFingerprintAttribute);
  const std::string fingerprint(spec.get_string_attribute(kFingerprintAttribute));
  if (!fingerprint.empty()) {
    header.insert(kFingerprintAttribute, Imf::StringAttribute(fingerprint));
  }
  return header;
}

}  // namespace vitrell::media
