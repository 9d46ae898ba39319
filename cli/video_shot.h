// What a video is rendered from: the opened input with its first frame, and the settings.
#ifndef VITRELL_CLI_VIDEO_SHOT_H_
#define VITRELL_CLI_VIDEO_SHOT_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/layer_frames.h"
#include "cli/notes.h"
#include "cli/video_source.h"
#include "look/settings.h"
#include "media/carried_streams.h"
#include "media/video_excerpt.h"
#include "media/video_handles.h"
#include "media/video_reader.h"

namespace vitrell::cli {

class VideoShot : public VideoSource {
 public:
  // Opens INPUT, whose rate takes the place of --fps in the arguments, and the length of what is
  // rendered that of --length, and checks names and settings. Frames outside the range are not
  // given; of those that are, `last` is the last one that is rendered (or the video's own). The
  // arguments must outlive it. Throws Failure.
  VideoShot(RenderArguments& arguments, const media::VideoRange& range, std::int64_t last,
            const look::Panel& panel, Notes& notes);

  // Decodes the first frame to render, on which size, depth and fitted presets depend. Throws
  // Failure, also where there is none.
  void ReadFirst(Notes& notes);

  // From the first frame on, with what else of the file comes before each; with --frames only those
  // asked for.
  std::string Name() const override { return reader_.Name().string(); }
  std::int64_t ExpectedFrames() const override;
  bool Next(VideoSourceFrame& frame) override;
  std::vector<media::PacketHandle> TakeLastPackets() override { return frames_.TakePackets(); }
  std::string Damage() const override { return frames_.Damage(); }

  // Of what is rendered; nothing for the whole video.
  std::optional<media::CarriedSpan> Span() const;

  media::VideoReader& Reader() { return reader_; }
  const media::VideoReader& Reader() const { return reader_; }
  const look::Settings& Settings() const { return settings_; }
  // Of the first frame; known since ReadFirst.
  const AVFrame& First() const { return *first_; }
  int Width() const { return first_->width; }
  int Height() const { return first_->height; }
  // Whether the effect works with 16 bits.
  bool IsDeep() const { return deep_; }

  // Whether the video's frame with this number is the first to be rendered.
  bool IsFirst(std::int64_t number) const { return number == frames_.Range().first; }

  // The file that is the custom layer of the video's frame with this number; empty: there is none.
  std::string LayerOf(std::int64_t number) const { return layers_.FileOf(number); }
  // Of all its files.
  std::string HashOfLayer() const { return layers_.Hash(); }

  // How long after the first frame of the range one with this number is shown at a constant rate.
  double SecondsOf(std::int64_t number) const;
  // The values at the video's frame with this number, shown so many seconds after the first frame
  // of the range, which is frame 0 of the keys.
  look::Settings SettingsAt(std::int64_t number, double seconds) const;

 private:
  [[noreturn]] void ThrowNoFrame() const;
  // The number of the last frame that is rendered, as far as headers tell.
  std::int64_t LastExpected() const;

  RenderArguments& arguments_;
  media::VideoReader reader_;
  media::VideoExcerpt frames_;
  look::Settings settings_;
  LayerFiles layers_;
  look::TimeBase timeBase_;
  media::FrameHandle first_ = media::MakeFrame();
  media::FrameHandle next_ = media::MakeFrame();
  bool begun_ = false;
  bool deep_ = false;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_SHOT_H_
