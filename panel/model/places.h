// Where the files around this program lie.
#ifndef VITRELL_PANEL_MODEL_PLACES_H_
#define VITRELL_PANEL_MODEL_PLACES_H_

#include <filesystem>

namespace vitrell::panel {

// The module the user named or, with an empty name, the first that exists beside the program, in
// ../lib/vitrell (installed) and in ../src (build folder). Throws media::Failure.
std::filesystem::path FindEffect(const std::filesystem::path& named);

// The command line: beside the program, in ../cli (build folder), or on the search path. Throws
// media::Failure.
std::filesystem::path FindTool();

// The presets that come with the program; empty if they are not there.
std::filesystem::path ShippedPresets();

// Where the user's own presets are kept; made if it is not there.
std::filesystem::path OwnPresets();

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_PLACES_H_
