// What a video is rendered from: the opened input with its first frame, and the settings.
#ifndef VITRELL_CLI_VIDEO_SHOT_H_
#define VITRELL_CLI_VIDEO_SHOT_H_

#include <cstdint>

#include "cli/arguments.h"
#include "cli/notes.h"
#include "look/settings.h"
#include "media/video_handles.h"
#include "media/video_reader.h"

namespace vitrell::cli {

class VideoShot {
 public:
  // Opens INPUT, whose rate and length take the place of --fps and --length in the arguments, and
  // checks names and settings. The arguments must outlive it. Throws Failure.
  VideoShot(RenderArguments& arguments, const look::Panel& panel, Notes& notes);

  // Decodes the first frame, on which size, depth and fitted presets depend. Throws Failure, also
  // where there is none.
  void ReadFirst(Notes& notes);

  media::VideoReader& Reader() { return reader_; }
  const media::VideoReader& Reader() const { return reader_; }
  const look::Settings& Settings() const { return settings_; }
  // Of the first frame; known since ReadFirst.
  AVFrame& First() { return *first_; }
  int Width() const { return first_->width; }
  int Height() const { return first_->height; }
  // Whether the effect works with 16 bits.
  bool IsDeep() const { return deep_; }

  // Between the frame and the first one.
  double SecondsTo(const AVFrame& frame) const;
  // The values at the frame with this index, from 0, so many seconds after the first.
  look::Settings SettingsAt(std::int64_t index, double seconds) const;

 private:
  RenderArguments& arguments_;
  media::VideoReader reader_;
  look::Settings settings_;
  look::TimeBase timeBase_;
  media::FrameHandle first_ = media::MakeFrame();
  bool deep_ = false;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_SHOT_H_
