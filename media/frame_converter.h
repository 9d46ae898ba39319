// Frames on their way to RGB and back.
//
// Only the form of the numbers changes: luma and chroma become red, green and blue by the video's
// own matrix and range. Primaries and transfer stay what they are; nothing is colour-managed.
#ifndef VITRELL_MEDIA_FRAME_CONVERTER_H_
#define VITRELL_MEDIA_FRAME_CONVERTER_H_

#include <filesystem>

#include "media/video_colours.h"
#include "media/video_handles.h"

namespace vitrell::media {

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

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_FRAME_CONVERTER_H_
