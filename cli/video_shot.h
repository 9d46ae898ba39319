// What a video is rendered from: the opened input with its first frame, and the settings.
#ifndef VITRELL_CLI_VIDEO_SHOT_H_
#define VITRELL_CLI_VIDEO_SHOT_H_

#include <cstdint>
#include <optional>

#include "cli/arguments.h"
#include "cli/notes.h"
#include "look/settings.h"
#include "media/carried_streams.h"
#include "media/video_excerpt.h"
#include "media/video_handles.h"
#include "media/video_reader.h"

namespace vitrell::cli {

class VideoShot {
 public:
  // Opens INPUT, whose rate and length take the place of --fps and --length in the arguments, and
  // checks names and settings. The arguments must outlive it. Throws Failure.
  VideoShot(RenderArguments& arguments, const look::Panel& panel, Notes& notes);

  // Decodes the first frame to render, on which size, depth and fitted presets depend. Throws
  // Failure, also where there is none.
  void ReadFirst(Notes& notes);
  // The frames after it, and what else of the file comes before each; with --frames only those
  // asked for.
  media::VideoExcerpt& Frames() { return frames_; }
  // How many there are to render, as far as the header tells; 0: unknown.
  std::int64_t ExpectedFrames() const;
  // Of what is rendered; nothing for the whole video.
  std::optional<media::CarriedSpan> Span() const;

  media::VideoReader& Reader() { return reader_; }
  const media::VideoReader& Reader() const { return reader_; }
  const look::Settings& Settings() const { return settings_; }
  // Of the first frame; known since ReadFirst.
  AVFrame& First() { return *first_; }
  int Width() const { return first_->width; }
  int Height() const { return first_->height; }
  // Whether the effect works with 16 bits.
  bool IsDeep() const { return deep_; }

  // Between the frame and the video's first one.
  double SecondsTo(const AVFrame& frame) const;
  // The values at the video's frame with this number, from 0, so many seconds after the first.
  look::Settings SettingsAt(std::int64_t number, double seconds) const;

 private:
  [[noreturn]] void ThrowNoFrame() const;

  RenderArguments& arguments_;
  media::VideoReader reader_;
  media::VideoExcerpt frames_;
  look::Settings settings_;
  look::TimeBase timeBase_;
  media::FrameHandle first_ = media::MakeFrame();
  bool deep_ = false;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_SHOT_H_
