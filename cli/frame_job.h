// What is told to a worker about one frame of a sequence, and what comes back.
#ifndef VITRELL_CLI_FRAME_JOB_H_
#define VITRELL_CLI_FRAME_JOB_H_

#include <cstdint>
#include <string>
#include <vector>

#include "cli/notes.h"

namespace vitrell::cli {

struct FrameJob {
  std::int64_t frame = 0;  // whose values are taken
  std::string input;       // the file
  bool black = false;      // in place of its picture
  std::string output;
  std::string layer;  // empty: none
};

enum class FrameState {
  kRendered,   // and written
  kSkipped,    // already existed, complete and up to date
  kFailed,     // is not there
  kCancelled,  // abandoned because of a signal
};

struct FrameAnswer {
  std::int64_t frame = 0;
  FrameState state = FrameState::kRendered;
  int exitCode = 0;    // of the failure, as a program that renders this frame alone would have
  std::string error;   // of a failure
  std::string again;   // why an existing frame was rendered again: "stale", "torn"
  double seconds = 0;  // from the job to the answer
  int width = 0;       // of what the effect saw
  int height = 0;
  int bits = 0;  // that the effect worked with
  std::vector<Note> notes;
  std::string report;  // as JSON; empty where none is wanted
};

// Puts a failure into the answer; an exit code of kCancelled tells that it was given up.
void Fail(FrameAnswer& answer, int exitCode, const std::string& error);

// "done", "skipped", "failed", "cancelled".
const char* NameOf(FrameState state);

// As bytes between two processes of one program, file names in any encoding.
std::string Pack(const FrameJob& job);
std::string Pack(const FrameAnswer& answer);
FrameJob UnpackJob(const std::string& bytes);
FrameAnswer UnpackAnswer(const std::string& bytes);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_FRAME_JOB_H_
