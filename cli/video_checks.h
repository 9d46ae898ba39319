// Whether a render is one of a video, and what such a one does not take.
#ifndef VITRELL_CLI_VIDEO_CHECKS_H_
#define VITRELL_CLI_VIDEO_CHECKS_H_

#include <string>

#include "cli/arguments.h"
#include "media/video_encoding.h"

namespace vitrell::cli {

// Whether a file, or standard input, is a video by its first bytes, or by what it is not.
bool IsVideoFile(const std::string& name);

// INPUT is a video and OUTPUT a sequence of pictures.
bool IsVideoToSequence(const RenderArguments& arguments);

// OUTPUT has a video's extension and INPUT is no picture, or both are standard streams and a video
// comes in. Throws Failure (wrong usage) where a video would have to become a picture.
bool IsVideoJob(const RenderArguments& arguments);

// The options about the output's form.
media::VideoEncoding VideoEncodingOf(const RenderArguments& arguments);

// Refuses the options that say which part of a picture to read, and --existing for pipes. Throws
// Failure.
void CheckVideoInput(const RenderArguments& arguments);

// The same, and refuses options that are for written pictures and forms that do not go together.
// Throws Failure.
void CheckVideoOptions(const RenderArguments& arguments);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_CHECKS_H_
