// Loops over the pixels of a frame.
#include "media/video_alpha.h"

#include <cstdint>

#include "media/frame_rows.h"
#include "media/pixel_formats.h"
#include "media/sample_maths.h"

namespace vitrell::media {
namespace {

// Where the channels stand in a pixel of kRgb8 and of kRgb16.
constexpr ChannelLayout kLayout8 = {1, 2, 3, 0};
constexpr ChannelLayout kLayout16 = {0, 1, 2, 3};

// Calls function(samples of a pixel) for all pixels of the frame.
template <typename Channel, typename Function>
void ForEachPixel(AVFrame& frame, const Function& function) {
  for (int y = 0; y < frame.height; ++y) {
    Channel* row = FrameRow<Channel>(frame, y);
    for (int x = 0; x < frame.width; ++x, row += 4) function(row);
  }
}

// colour * alpha / white, rounded to the nearest.
template <typename Channel>
Channel Covered(Channel colour, Channel alpha) {
  constexpr std::uint32_t kMost = static_cast<Channel>(-1);
  return static_cast<Channel>((std::uint32_t{colour} * alpha + kMost / 2) / kMost);
}

template <typename Channel, typename Pixel>
void GiveDivided(AVFrame& frame, const ChannelLayout& places, headless::WorldBuffer& world) {
  for (int y = 0; y < frame.height; ++y) {
    Channel* samples = FrameRow<Channel>(frame, y);
    auto* out = reinterpret_cast<Pixel*>(world.Row(y));
    for (int x = 0; x < frame.width; ++x, samples += 4) {
      const Argb argb = StraightPixel(samples, places, false);
      out[x] = {HostChannel<Pixel>(argb[0]), HostChannel<Pixel>(argb[1]),
                HostChannel<Pixel>(argb[2]), HostChannel<Pixel>(argb[3])};
      samples[places.red] = Quantised<Channel>(argb[1]);
      samples[places.green] = Quantised<Channel>(argb[2]);
      samples[places.blue] = Quantised<Channel>(argb[3]);
    }
  }
}

}  // namespace

void MakeOpaque(AVFrame& frame) {
  if (frame.format == kRgb16) {
    ForEachPixel<std::uint16_t>(frame, [](std::uint16_t* pixel) { pixel[3] = 65535; });
  } else {
    ForEachPixel<std::uint8_t>(frame, [](std::uint8_t* pixel) { pixel[0] = 255; });
  }
}

void LayOverBlack(AVFrame& frame) {
  if (frame.format == kRgb16) {
    ForEachPixel<std::uint16_t>(frame, [](std::uint16_t* pixel) {
      for (int i = 0; i < 3; ++i) pixel[i] = Covered(pixel[i], pixel[3]);
      pixel[3] = 65535;
    });
  } else {
    ForEachPixel<std::uint8_t>(frame, [](std::uint8_t* pixel) {
      for (int i = 1; i < 4; ++i) pixel[i] = Covered(pixel[i], pixel[0]);
      pixel[0] = 255;
    });
  }
}

void GiveDividedByAlpha(AVFrame& frame, headless::WorldBuffer& world) {
  if (world.Deep()) {
    GiveDivided<std::uint16_t, PF_Pixel16>(frame, kLayout16, world);
  } else {
    GiveDivided<std::uint8_t, PF_Pixel>(frame, kLayout8, world);
  }
}

}  // namespace vitrell::media
