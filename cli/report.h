// What a render did, as JSON for programs.
#ifndef VITRELL_CLI_REPORT_H_
#define VITRELL_CLI_REPORT_H_

#include <OpenImageIO/imageio.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/notes.h"

namespace vitrell::cli {

// Of one picture's file.
struct PictureFacts {
  std::string file;
  std::string format;  // "JPEG 2000"
  OIIO::ImageSpec spec;
};

// Of one video's file.
struct VideoFacts {
  std::string file;
  std::string container;    // "matroska,webm"
  std::string codec;        // "h264"
  std::string pixelFormat;  // "yuv420p"
  int width = 0;
  int height = 0;
  std::string frameRate;  // "30000/1001"
};

// The seconds of the steps, each measured from the end of the one before.
class StepClock {
 public:
  double Lap();
  double Total() const;

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point start_ = Clock::now();
  Clock::time_point lap_ = start_;
};

// What this process took of all processors until now.
double ProcessorSeconds();

struct Report {
  int exitCode = 0;
  std::string error;  // of a failure
  bool dryRun = false;
  bool skipped = false;      // what was there already stays
  std::optional<int> pages;  // rendered; the facts are those of the first
  std::optional<PictureFacts> input;
  std::optional<PictureFacts> layer;
  std::optional<PictureFacts> output;
  std::optional<VideoFacts> videoInput;
  std::optional<VideoFacts> videoOutput;
  std::int64_t frames = 0;  // of a video, rendered
  int effectBits = 0;
  int jobs = 0;  // frames of a video at once; 0: not told
  int threads = 0;
  double readSeconds = 0;
  double effectSeconds = 0;
  double writeSeconds = 0;
  double totalSeconds = 0;
  double effectProcessorSeconds = 0;  // of all threads
};

// What is not known because a failure came before is left out.
std::string ReportAsJson(const Report& report, const std::vector<Note>& notes);

// Puts the report into the target, a file or "-" for standard output. What a replaced file loses
// becomes advice. Throws Failure.
void PutReport(const Report& report, const std::string& target, Notes& notes);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_REPORT_H_
