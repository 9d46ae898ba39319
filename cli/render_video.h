// `vitrell render` of a video.
#ifndef VITRELL_CLI_RENDER_VIDEO_H_
#define VITRELL_CLI_RENDER_VIDEO_H_

#include "cli/arguments.h"
#include "cli/video_checks.h"

namespace vitrell::cli {

// Renders all frames of INPUT, --jobs of them at once; they leave in order. Frame 0 of keys is the
// first one; the video's rate and length take the place of --fps and --length. What is rendered is
// kept, under a name that says so, when the rest cannot be read or a signal comes. Throws Failure.
// `encoderThreads`: see CountEncoderThreads.
void RenderVideo(const RenderArguments& arguments, int encoderThreads);

// Renders frames of the video INPUT into pictures, by default all of them under their numbers in
// the video, from 0. Otherwise as RunSequence. Throws Failure.
void RenderVideoAsSequence(const RenderArguments& arguments);

// Renders the frames of a sequence into one video, at the rate of --fps. All have one size; what is
// rendered before one that has another, or that cannot be read, is kept. Throws Failure.
void RenderSequenceAsVideo(const RenderArguments& arguments, int encoderThreads);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_RENDER_VIDEO_H_
