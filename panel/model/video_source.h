// A video, frame by frame in any order.
#ifndef VITRELL_PANEL_MODEL_VIDEO_SOURCE_H_
#define VITRELL_PANEL_MODEL_VIDEO_SOURCE_H_

#include <filesystem>
#include <memory>

#include "panel/model/source.h"

namespace vitrell::panel {

// Whether a file that is no picture may be a video: FFmpeg's libraries find one in it.
bool IsVideo(const std::filesystem::path& file);

// Going forward decodes one frame after the other; going back beyond the last kKeptBytes of frames
// decodes from the start again. Throws media::Failure.
std::unique_ptr<Source> OpenVideoSource(const std::filesystem::path& file);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_VIDEO_SOURCE_H_
