// Tags and the usual matrices.
#include "media/video_colours.h"

#include "media/pixel_formats.h"

namespace vitrell::media {
namespace {

constexpr int kHdWidth = 1280;
constexpr int kSdHeight = 576;

}  // namespace

VideoColours ColoursOf(const AVFrame& frame) {
  return {frame.colorspace, frame.color_range, frame.color_primaries, frame.color_trc,
          frame.chroma_location};
}

void SetColours(const VideoColours& colours, AVFrame& frame) {
  frame.colorspace = colours.matrix;
  frame.color_range = colours.range;
  frame.color_primaries = colours.primaries;
  frame.color_trc = colours.transfer;
  frame.chroma_location = colours.chromaPlace;
}

void SetColours(const VideoColours& colours, AVCodecContext& codec) {
  codec.colorspace = colours.matrix;
  codec.color_range = colours.range;
  codec.color_primaries = colours.primaries;
  codec.color_trc = colours.transfer;
  codec.chroma_sample_location = colours.chromaPlace;
}

AVColorSpace UsualMatrix(int width, int height) {
  return width >= kHdWidth || height > kSdHeight ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
}

VideoColours ColoursForOutput(const VideoColours& source, AVPixelFormat sourceFormat,
                              AVPixelFormat outputFormat, int width, int height) {
  VideoColours colours = source;
  if (IsRgb(outputFormat)) {
    colours.matrix = AVCOL_SPC_RGB;
    colours.range = AVCOL_RANGE_JPEG;
    colours.chromaPlace = AVCHROMA_LOC_UNSPECIFIED;
  } else if (IsRgb(sourceFormat) || IsGrey(sourceFormat)) {
    colours.matrix = UsualMatrix(width, height);
    colours.range = AVCOL_RANGE_MPEG;
  } else if (IsOldFullRange(sourceFormat)) {
    colours.range = AVCOL_RANGE_JPEG;
  }
  return colours;
}

}  // namespace vitrell::media
