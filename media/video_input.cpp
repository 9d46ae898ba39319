// Containers, streams and decoders.
#include "media/video_input.h"

#include <cerrno>
#include <new>
#include <string>
#include <string_view>

#include "media/failure.h"
#include "media/video_messages.h"

extern "C" {
#include <libavutil/dict.h>
}

namespace vitrell::media {
namespace {

[[noreturn]] void Fail(const std::filesystem::path& name, const std::string& rest) {
  throw Failure(kFailed, name.string() + ": " + rest);
}

bool IsCover(const AVStream& stream) {
  return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

// Where alpha stands beside the colours, the usual decoder would drop it.
const AVCodec* DecoderFor(const AVStream& stream) {
  const AVDictionaryEntry* alpha = av_dict_get(stream.metadata, "alpha_mode", nullptr, 0);
  const AVCodecID id = stream.codecpar->codec_id;
  if (alpha != nullptr && std::string_view(alpha->value) == "1") {
    const AVCodec* decoder = id == AV_CODEC_ID_VP9   ? avcodec_find_decoder_by_name("libvpx-vp9")
                             : id == AV_CODEC_ID_VP8 ? avcodec_find_decoder_by_name("libvpx")
                                                     : nullptr;
    if (decoder != nullptr) return decoder;
  }
  return avcodec_find_decoder(id);
}

}  // namespace

DemuxerHandle OpenVideoContainer(const std::filesystem::path& file,
                                 const std::filesystem::path& name, AVIOContext* pipe) {
  AVFormatContext* container = avformat_alloc_context();
  if (container == nullptr) throw std::bad_alloc();
  container->pb = pipe;
  const std::string address = pipe != nullptr ? "" : "file:" + file.string();
  // Frees the context when it fails.
  int error = avformat_open_input(&container, address.c_str(), nullptr, nullptr);
  DemuxerHandle opened(container);
  if (error >= 0) error = avformat_find_stream_info(container, nullptr);
  if (error < 0) {
    Fail(name, "cannot be read as a video (" + VideoErrorCause(error) + "). Check the file.");
  }
  return opened;
}

AVStream& FindVideoStream(AVFormatContext& container, const std::filesystem::path& name) {
  const int best = av_find_best_stream(&container, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
  if (best >= 0 && !IsCover(*container.streams[best])) return *container.streams[best];
  for (unsigned i = 0; i < container.nb_streams; ++i) {
    AVStream& stream = *container.streams[i];
    if (stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !IsCover(stream)) return stream;
  }
  Fail(name, std::string("has no video in it") +
                 (container.nb_streams > 0 ? ", only sound or text" : "") +
                 ". Give a file with a video.");
}

CodecHandle OpenVideoDecoder(const AVStream& stream, const std::filesystem::path& name,
                             const DecoderLimits& limits) {
  const std::string video =
      std::string("its video (") + avcodec_get_name(stream.codecpar->codec_id) + ")";
  const AVCodec* codec = DecoderFor(stream);
  if (codec == nullptr) {
    Fail(name, video + " cannot be decoded here. Convert it to another codec.");
  }
  CodecHandle decoder(avcodec_alloc_context3(codec));
  if (decoder == nullptr || avcodec_parameters_to_context(decoder.get(), stream.codecpar) < 0) {
    throw std::bad_alloc();
  }
  decoder->pkt_timebase = stream.time_base;
  decoder->thread_count = limits.threads;
  decoder->max_pixels = limits.maxPixels;
  if (const int error = avcodec_open2(decoder.get(), codec, nullptr); error < 0) {
    if (error == AVERROR(ENOMEM)) throw std::bad_alloc();
    Fail(name, video + " cannot be decoded (" + VideoErrorCause(error) +
                   "). Convert it to another codec.");
  }
  return decoder;
}

std::int64_t CountVideoFrames(const std::filesystem::path& file) {
  const DemuxerHandle container = OpenVideoContainer(file, file, nullptr);
  const AVStream& stream = FindVideoStream(*container, file);
  const PacketHandle packet = MakePacket();
  std::int64_t count = 0;
  while (av_read_frame(container.get(), packet.get()) >= 0) {
    if (packet->stream_index == stream.index) ++count;
    av_packet_unref(packet.get());
  }
  return count;
}

}  // namespace vitrell::media
