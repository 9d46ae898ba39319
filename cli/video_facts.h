// What a report tells of videos.
#ifndef VITRELL_CLI_VIDEO_FACTS_H_
#define VITRELL_CLI_VIDEO_FACTS_H_

#include <string>

#include "cli/report.h"
#include "media/video_form.h"
#include "media/video_reader.h"

namespace vitrell::cli {

// `first` is a decoded frame.
VideoFacts InputFacts(const media::VideoReader& reader, const AVFrame& first);

// Of a video that is made from `input`; size and rate stay.
VideoFacts OutputFacts(const std::string& output, const media::VideoForm& form,
                       const VideoFacts& input);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_FACTS_H_
