// In which container, codec and pixel format a video is written.
#ifndef VITRELL_MEDIA_VIDEO_FORM_H_
#define VITRELL_MEDIA_VIDEO_FORM_H_

#include <filesystem>
#include <optional>
#include <string>

#include "media/video_handles.h"

namespace vitrell::media {

// What was asked for; the rest is the container's usual.
struct VideoEncoding {
  std::string container;       // "y4m", "nut": of standard output; empty: by the extension
  std::string codec;           // a name of the libraries': "prores", "libx265"
  std::string pixelFormat;     // likewise: "yuv422p10le"
  std::optional<int> quality;  // 1 to 100
  bool lossless = false;
};

// Of the frames that are to be written.
struct VideoContent {
  AVPixelFormat sourceFormat = AV_PIX_FMT_NONE;
  bool deep = false;
  bool alpha = false;
  int width = 0;
  int height = 0;
};

struct VideoForm {
  const AVOutputFormat* container = nullptr;
  const AVCodec* codec = nullptr;
  AVPixelFormat pixelFormat = AV_PIX_FMT_NONE;
};

// Whether the extension is one of those that videos are written with.
bool IsVideoName(const std::filesystem::path& file);
// "mov, mkv, mp4, webm, nut, y4m".
std::string VideoExtensions();

// Refuses containers, codecs and wishes that do not go together, before anything is read. `target`
// may be "-". Throws Failure (wrong usage).
void CheckVideoEncoding(const std::filesystem::path& target, const VideoEncoding& encoding);

// What the target is written as. Throws Failure, also for sizes that the pixel format cannot have.
VideoForm ChooseVideoForm(const std::filesystem::path& target, const VideoEncoding& encoding,
                          const VideoContent& content);

// The codec's options for the form and frames of a size: quality, profile.
void SetCodecOptions(const VideoEncoding& encoding, const VideoForm& form, int width, int height,
                     AVDictionary** options);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_FORM_H_
