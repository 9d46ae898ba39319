// Rows of a frame's first plane.
#ifndef VITRELL_MEDIA_FRAME_ROWS_H_
#define VITRELL_MEDIA_FRAME_ROWS_H_

#include <cstddef>

#include "media/video_handles.h"

namespace vitrell::media {

// The channels of a row, one pixel after the other.
template <typename Channel>
Channel* FrameRow(const AVFrame& frame, int y) {
  return reinterpret_cast<Channel*>(frame.data[0] + std::ptrdiff_t{y} * frame.linesize[0]);
}

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_FRAME_ROWS_H_
