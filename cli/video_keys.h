// The values of moving controls at the frames of a video.
#ifndef VITRELL_CLI_VIDEO_KEYS_H_
#define VITRELL_CLI_VIDEO_KEYS_H_

#include "look/animation.h"
#include "look/settings.h"

namespace vitrell::cli {

// The values at the frame with this index (from 0) that is shown so many seconds after the first
// one. Where frames are not at equal distances, keys in seconds follow the seconds and keys in
// frames the index; a control whose keys are in both counts as one in seconds.
look::Settings SettingsOfFrame(const look::Settings& settings, const look::TimeBase& base,
                               double index, double seconds);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_KEYS_H_
