// Pixels on their way from a video's frame to the effect and back.
#ifndef VITRELL_MEDIA_VIDEO_EXCHANGE_H_
#define VITRELL_MEDIA_VIDEO_EXCHANGE_H_

#include <filesystem>

#include "headless/world_buffer.h"
#include "media/frame_converter.h"
#include "media/picture.h"
#include "media/video_handles.h"

namespace vitrell::media {

// Frames are of the format kRgb8, for worlds of 8 bits, or kRgb16; frame and world have one size.

// The frame as the effect gets it: straight ARGB, words of 0..65535 rounded to 0..32768.
void GiveFrame(const AVFrame& frame, headless::WorldBuffer& world);

struct TakeChoice {
  bool overBlack = false;  // colours are multiplied by alpha, which becomes opaque
};

// The result as a frame of the same format. Where the effect left a channel as `given`, the
// frame's own value is kept, so that 16 bits that the effect did not change stay the same bits.
// True when any pixel of the result is not opaque.
bool TakeFrame(const AVFrame& frame, const headless::WorldBuffer& given,
               const headless::WorldBuffer& result, const TakeChoice& choice, AVFrame& taken);

// The same in both directions with all the memory that it takes, for any number of frames of one
// size but for the two ends: a decoded frame, RGB, what the effect gets and gives back, RGB again.
class FrameExchange {
 public:
  // `alpha` says how the colours of decoded frames stand to it; without a word they are straight.
  FrameExchange(int width, int height, bool deep, int threads,
                AlphaMeaning alpha = AlphaMeaning::kAsInFile);

  // A decoded frame for the effect. `file` is named in a Failure.
  void Give(const AVFrame& decoded, const std::filesystem::path& file);
  const headless::WorldBuffer& Given() const { return given_; }
  headless::WorldBuffer& Result() { return result_; }
  // What TakeFrame answers, over the result. `taken` has the format that fits the depth.
  bool Take(const TakeChoice& choice, AVFrame& taken);

 private:
  AVFrame& OwnFrame();

  FrameConverter converter_;
  AlphaMeaning alpha_;
  headless::WorldBuffer given_;
  headless::WorldBuffer result_;
  FrameHandle inWorld_;  // the pixels of given_ as a frame; null where none is converted into it
  FrameHandle rgb_;      // null until it is needed
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_EXCHANGE_H_
