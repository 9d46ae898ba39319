// Which colours a video's numbers stand for, and frames on their way to RGB and back.
//
// Only the form of the numbers changes: luma and chroma become red, green and blue by the video's
// own matrix and range. Primaries and transfer stay what they are; nothing is colour-managed.
#ifndef VITRELL_MEDIA_VIDEO_COLOURS_H_
#define VITRELL_MEDIA_VIDEO_COLOURS_H_

#include <filesystem>

#include "media/video_handles.h"

namespace vitrell::media {

struct VideoColours {
  AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
  AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
  AVColorPrimaries primaries = AVCOL_PRI_UNSPECIFIED;
  AVColorTransferCharacteristic transfer = AVCOL_TRC_UNSPECIFIED;
  AVChromaLocation chromaPlace = AVCHROMA_LOC_UNSPECIFIED;
};

// The tags of a decoded frame.
VideoColours ColoursOf(const AVFrame& frame);
void SetColours(const VideoColours& colours, AVFrame& frame);
void SetColours(const VideoColours& colours, AVCodecContext& codec);

// What the numbers of a format depend on: RGB has no matrix, its range is full.
bool IsRgb(AVPixelFormat format);
bool HasAlpha(AVPixelFormat format);
// More than 8 bits in a channel.
bool IsDeep(AVPixelFormat format);

// The matrix in use where none is told, as players take it: BT.709 from 1280 pixels of width or
// more than 576 rows on, otherwise BT.601.
AVColorSpace UsualMatrix(int width, int height);

// The tags of frames that were read with `source` and are written in another format. Tags that the
// source lacks stay unspecified, unless RGB becomes luma and chroma: then matrix and range are
// told.
VideoColours ColoursForOutput(const VideoColours& source, AVPixelFormat sourceFormat,
                              AVPixelFormat outputFormat, int width, int height);

// Converts frames of one size between a video's format and the RGB formats of kRgb8 and kRgb16,
// in full chroma resolution and with exact rounding.
class FrameConverter {
 public:
  explicit FrameConverter(int threads) : threads_(threads) {}

  // Both frames have their pixels and the size; their tags rule the conversion. Throws Failure
  // that names the file, if the matrix is none of those that can be converted.
  void Convert(const AVFrame& source, AVFrame& target, const std::filesystem::path& file);

 private:
  struct Form {
    int width = 0;
    int height = 0;
    int sourceFormat = -1;
    int targetFormat = -1;
    VideoColours source;
    VideoColours target;
  };

  void Scale(const AVFrame& source, AVFrame& target, const std::filesystem::path& file);
  AVFrame& Between(const AVFrame& like, AVPixelFormat format);
  void Prepare(const AVFrame& source, const AVFrame& target, const std::filesystem::path& file);
  static Form FormOf(const AVFrame& source, const AVFrame& target);
  static bool IsSame(const Form& a, const Form& b);

  int threads_;
  Form form_;
  ScalerHandle scaler_;
  FrameHandle between_;
};

// What the effect's pixels are made from: alpha, red, green, blue in bytes, and red, green, blue,
// alpha in words of 0 to 65535.
constexpr AVPixelFormat kRgb8 = AV_PIX_FMT_ARGB;
constexpr AVPixelFormat kRgb16 = AV_PIX_FMT_RGBA64;

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_COLOURS_H_
