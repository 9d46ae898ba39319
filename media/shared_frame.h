// A frame's pixels in memory that several processes have in common.
#ifndef VITRELL_MEDIA_SHARED_FRAME_H_
#define VITRELL_MEDIA_SHARED_FRAME_H_

#include <cstddef>
#include <filesystem>

#include "media/video_colours.h"
#include "media/video_handles.h"

namespace vitrell::media {

// What pixels alone do not tell; frames of one video may differ in it.
struct FrameForm {
  AVPixelFormat format = AV_PIX_FMT_NONE;
  VideoColours colours;
};

// Of the frames that are made of what the effect renders: kRgb8 or kRgb16.
FrameForm RgbForm(bool deep);

// Room for one frame of a size in any format. Processes that are forked later have the same room;
// who uses it when is theirs to agree on. What is not written to takes no memory.
class SharedFrame {
 public:
  // Throws std::bad_alloc.
  SharedFrame(int width, int height);
  ~SharedFrame();
  SharedFrame(SharedFrame&& other) noexcept;
  SharedFrame& operator=(SharedFrame&&) = delete;

  // Copies a frame of this size into the room. Throws Failure that names the file.
  FrameForm Put(const AVFrame& frame, const std::filesystem::path& file) const;
  // The room as a frame; valid as long as this object.
  FrameHandle As(const FrameForm& form) const;

 private:
  int width_;
  int height_;
  std::size_t bytes_ = 0;
  std::byte* room_ = nullptr;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_SHARED_FRAME_H_
