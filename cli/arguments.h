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

// Of a sequence.
struct FrameArguments {
  std::string frames;            // a set; empty: all in the folder
  std::string framesOut;         // empty: the same numbers
  std::string missing = "fail";  // or "skip", "hold", "black"
  std::string existing;          // "fail", "skip" or "overwrite"; empty: as --force says
  std::string part;              // "K/N"; empty: all
  bool keepGoing = false;
  int jobs = 0;             // 0: chosen by threads and memory
  std::int64_t memory = 0;  // bytes for all frames in flight; 0: half of what is free
  std::string progress;     // "bar", "plain", "json" or "none"; empty: a bar on a terminal
  std::string status;       // a file for what "json" tells
};

struct RenderArguments {
  EffectArguments effect;
  FrameArguments frames;
  std::string input;   // "-": standard input
  std::string output;  // "-": standard output
  std::string savePreset;
  std::string customLayer;
  std::string depth = "auto";  // "auto", "8" or "16"
  media::Encoding encoding;
  bool isRateGiven = false;  // by --fps
  std::string videoFormat;   // the container of videos through standard streams
  std::string videoCodec;
  std::string pixelFormat;  // of a video
  int threads = 0;          // 0: all cores
  int processors = 0;       // that may be used at once: the threads that were given; 0: all
  std::int64_t maxPixels = media::PictureLimits{}.maxPixels;
  std::string channels;            // empty: as the header tells
  std::vector<std::string> parts;  // of the file, and of the frames: as they were given
  std::string part;                // of the file; empty: the first
  std::string pages;               // of one input, into one output; empty: one picture
  std::string alpha;  // "straight", "premultiplied" or "ignore"; empty: as the file says
  bool noAutoOrient = false;
  bool force = false;
  bool fit = false;
  bool dryRun = false;
  bool strict = false;
  std::string report;  // "-": standard output
  bool quiet = false;
  bool verbose = false;
};

struct CheckArguments {
  EffectArguments effect;
  std::string sequence;
  std::string frames;  // a set; empty: all in the folder
};

struct ParamsArguments {
  EffectArguments effect;
  std::string savePreset;
  bool force = false;
  bool json = false;
  bool markdown = false;
  bool frei0r = false;      // the filter for FFmpeg; with markdown the table of all parameters
  bool mlt = false;         // the arguments for melt
  std::string hostsPreset;  // the preset given to one of these two
};

struct KeysArguments {
  EffectArguments effect;
  std::string plot;  // an SVG file; empty: the list only
  bool json = false;
  bool force = false;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_ARGUMENTS_H_
