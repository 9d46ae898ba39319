// FFmpeg's objects, released by their owners.
#ifndef VITRELL_MEDIA_VIDEO_HANDLES_H_
#define VITRELL_MEDIA_VIDEO_HANDLES_H_

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

namespace vitrell::media {

// For the libraries' functions that take the address of the pointer and clear it.
template <auto Release>
struct ReleaseByAddress {
  template <typename Object>
  void operator()(Object* object) const {
    Release(&object);
  }
};

template <auto Release>
struct ReleaseByPointer {
  template <typename Object>
  void operator()(Object* object) const {
    Release(object);
  }
};

using FrameHandle = std::unique_ptr<AVFrame, ReleaseByAddress<av_frame_free>>;
using PacketHandle = std::unique_ptr<AVPacket, ReleaseByAddress<av_packet_free>>;
using CodecHandle = std::unique_ptr<AVCodecContext, ReleaseByAddress<avcodec_free_context>>;
using DemuxerHandle = std::unique_ptr<AVFormatContext, ReleaseByAddress<avformat_close_input>>;
using MuxerHandle = std::unique_ptr<AVFormatContext, ReleaseByPointer<avformat_free_context>>;
using ScalerHandle = std::unique_ptr<SwsContext, ReleaseByPointer<sws_freeContext>>;

// These throw std::bad_alloc.
FrameHandle MakeFrame();
// With memory for the pixels, aligned as the libraries like it.
FrameHandle MakeFrame(int width, int height, AVPixelFormat format);
PacketHandle MakePacket();

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_HANDLES_H_
