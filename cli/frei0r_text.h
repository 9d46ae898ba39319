// Settings as the hosts of the frei0r modules take them.
#ifndef VITRELL_CLI_FREI0R_TEXT_H_
#define VITRELL_CLI_FREI0R_TEXT_H_

#include <string>

#include "look/settings.h"

namespace vitrell::cli {

// A filter for `ffmpeg -vf`: "frei0r=filter_name=vitrell:filter_params=0.2|...". Throws Failure for
// a position in pixels, as the modules take percent.
std::string Frei0rForFfmpeg(const look::Settings& settings);

// Arguments for `melt`: "-filter frei0r.vitrell threads=1 lens.type=0.2 ..."; with the custom lens
// the transition that takes it from the second track. Keys become animation strings, whose times
// from the end stay such where the length is unknown (0). Throws like Frei0rForFfmpeg and MltText.
std::string Frei0rForMelt(const look::Settings& settings, const look::TimeBase& base);

// Every parameter's number, name, default and range, as one Markdown table.
std::string Frei0rAsMarkdown(const look::Settings& settings);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_FREI0R_TEXT_H_
