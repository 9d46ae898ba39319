// Making FFmpeg's objects.
#include "media/video_handles.h"

#include <new>

namespace vitrell::media {

FrameHandle MakeFrame() {
  FrameHandle frame(av_frame_alloc());
  if (frame == nullptr) throw std::bad_alloc();
  return frame;
}

FrameHandle MakeFrame(int width, int height, AVPixelFormat format) {
  FrameHandle frame = MakeFrame();
  frame->width = width;
  frame->height = height;
  frame->format = format;
  if (av_frame_get_buffer(frame.get(), 0) < 0) throw std::bad_alloc();
  return frame;
}

PacketHandle MakePacket() {
  PacketHandle packet(av_packet_alloc());
  if (packet == nullptr) throw std::bad_alloc();
  return packet;
}

}  // namespace vitrell::media
