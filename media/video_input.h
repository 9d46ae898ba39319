// Opening a video: its container, the stream to render, the decoder.
#ifndef VITRELL_MEDIA_VIDEO_INPUT_H_
#define VITRELL_MEDIA_VIDEO_INPUT_H_

#include <cstdint>
#include <filesystem>

#include "media/video_handles.h"

namespace vitrell::media {

// All of these throw Failure. `name` is the file as messages show it.

// `pipe` is what is read in the file's place; null: the file itself, which is never taken for an
// address on a network.
DemuxerHandle OpenVideoContainer(const std::filesystem::path& file,
                                 const std::filesystem::path& name, AVIOContext* pipe);

// The best video; pictures of a cover are none.
AVStream& FindVideoStream(AVFormatContext& container, const std::filesystem::path& name);

struct DecoderLimits {
  int threads = 1;
  std::int64_t maxPixels = 0;  // of a frame
};
// One that keeps alpha, where there are several.
CodecHandle OpenVideoDecoder(const AVStream& stream, const std::filesystem::path& name,
                             const DecoderLimits& limits);

// Counts the packets of the stream that is rendered, for which the file is read once without being
// decoded; headers often tell a length that is not exact.
std::int64_t CountVideoFrames(const std::filesystem::path& file);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_INPUT_H_
