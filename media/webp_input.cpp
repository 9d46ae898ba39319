// Reading WebP through its own library.
#include "media/webp_input.h"

#include <webp/decode.h>
#include <webp/demux.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>

namespace vitrell::media {
namespace {

using Demuxer = std::unique_ptr<WebPDemuxer, decltype(&WebPDemuxDelete)>;

constexpr int kLossless = 2;  // of WebPBitstreamFeatures::format

Demuxer Demux(const std::vector<uint8_t>& file) {
  const WebPData data{file.data(), file.size()};
  return {WebPDemux(&data), &WebPDemuxDelete};
}

void AddProfile(const WebPDemuxer* demuxer, OIIO::ImageSpec& spec) {
  WebPChunkIterator chunk{};
  if (WebPDemuxGetChunk(demuxer, "ICCP", 1, &chunk) != 0) {
    const WebPData& profile = chunk.chunk;
    spec.attribute("ICCProfile",
                   OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size)),
                   profile.bytes);
  }
  WebPDemuxReleaseChunkIterator(&chunk);
}

}  // namespace

bool WebpInput::open(const std::string& name, OIIO::ImageSpec& spec,
                     const OIIO::ImageSpec& /*wishes*/) {
  return open(name, spec);
}

bool WebpInput::open(const std::string& name, OIIO::ImageSpec& spec) {
  std::ifstream stream(name, std::ios::binary);
  file_.assign(std::istreambuf_iterator<char>(stream), {});
  const Demuxer demuxer = Demux(file_);
  WebPIterator frame{};
  WebPBitstreamFeatures features{};
  const bool whole =
      demuxer != nullptr && WebPDemuxGetFrame(demuxer.get(), 1, &frame) != 0 &&
      WebPGetFeatures(frame.fragment.bytes, frame.fragment.size, &features) == VP8_STATUS_OK;
  WebPDemuxReleaseIterator(&frame);
  if (!whole) {
    errorfmt("the WebP file is damaged or incomplete");
    return false;
  }
  frames_ = static_cast<int>(WebPDemuxGetI(demuxer.get(), WEBP_FF_FRAME_COUNT));
  const bool alpha = features.has_alpha != 0;
  m_spec = OIIO::ImageSpec(features.width, features.height, alpha ? 4 : 3, OIIO::TypeDesc::UINT8);
  if (alpha) m_spec.attribute("oiio:UnassociatedAlpha", 1);
  m_spec.attribute("webp:lossless", features.format == kLossless ? 1 : 0);
  AddProfile(demuxer.get(), m_spec);
  spec = m_spec;
  return true;
}

bool WebpInput::Decode() {
  const Demuxer demuxer = Demux(file_);
  WebPIterator frame{};
  if (demuxer == nullptr || WebPDemuxGetFrame(demuxer.get(), 1, &frame) == 0) return false;
  pixels_.resize(m_spec.image_bytes());
  const auto decode = m_spec.nchannels == 4 ? &WebPDecodeRGBAInto : &WebPDecodeRGBInto;
  const bool done = decode(frame.fragment.bytes, frame.fragment.size, pixels_.data(),
                           pixels_.size(), static_cast<int>(m_spec.scanline_bytes())) != nullptr;
  WebPDemuxReleaseIterator(&frame);
  return done;
}

bool WebpInput::read_native_scanline(int subimage, int /*miplevel*/, int y, int /*z*/, void* data) {
  if (subimage != 0 || y < 0 || y >= m_spec.height) return false;
  if (pixels_.empty() && !Decode()) {
    errorfmt("the WebP file's pixels are damaged");
    return false;
  }
  const std::size_t rowBytes = m_spec.scanline_bytes();
  std::memcpy(data, pixels_.data() + static_cast<std::size_t>(y) * rowBytes, rowBytes);
  return true;
}

bool WebpInput::seek_subimage(int subimage, int miplevel) {
  return subimage >= 0 && miplevel == 0 && (subimage == 0 || subimage < frames_);
}

bool WebpInput::close() {
  file_.clear();
  pixels_.clear();
  return true;
}

}  // namespace vitrell::media
