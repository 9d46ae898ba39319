// What the user asked for, as read from the command line.
#ifndef VITRELL_CLI_ARGUMENTS_H_
#define VITRELL_CLI_ARGUMENTS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "media/encoding.h"
#include "media/picture_limits.h"

namespace vitrell::cli {

// Options that several commands share. Empty texts stand for options that were not given.
struct EffectArguments {
  std::string effect;
  std::vector<std::string> presets;      // later ones are stronger; "-": standard input
  std::string keys;                      // keyframes from the host's clipboard
  std::vector<std::string> assignments;  // of --set, in order
  double at = 0;                         // the frame at which keys are taken
  double framesPerSecond = 25;           // of keys in seconds
  double length = 0;                     // in frames, for keys that count from the end; 0: unknown
};

struct RenderArguments {
  EffectArguments effect;
  std::string input;   // "-": standard input
  std::string output;  // "-": standard output
  std::string savePreset;
  std::string customLayer;
  std::string depth = "auto";  // "auto", "8" or "16"
  media::Encoding encoding;
  int threads = 0;  // 0: all cores
  std::int64_t maxPixels = media::PictureLimits{}.maxPixels;
  std::string channels;  // empty: as the header tells
  std::string part;      // empty: the first
  std::string pages;     // of one input, into one output; empty: one picture
  bool noAutoOrient = false;
  bool force = false;
  bool fit = false;
  bool dryRun = false;
  bool strict = false;
  std::string report;  // "-": standard output
  bool quiet = false;
  bool verbose = false;
};

struct ParamsArguments {
  EffectArguments effect;
  std::string savePreset;
  bool force = false;
  bool json = false;
  bool markdown = false;
  bool frei0r = false;      // the filter for FFmpeg; with markdown the table of all parameters
  bool mlt = false;         // the arguments for melt
  std::string hostsPreset;  // named behind one of these two
};

struct KeysArguments {
  EffectArguments effect;
  std::string plot;  // an SVG file; empty: the list only
  bool json = false;
  bool force = false;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_ARGUMENTS_H_
