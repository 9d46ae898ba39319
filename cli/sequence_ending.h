// How the render of a sequence ends: its report, its last line, its exit code.
#ifndef VITRELL_CLI_SEQUENCE_ENDING_H_
#define VITRELL_CLI_SEQUENCE_ENDING_H_

#include <cstdint>
#include <functional>
#include <string>

#include "cli/arguments.h"
#include "cli/sequence_tally.h"

namespace vitrell::cli {

struct SequenceEnding {
  const RenderArguments& arguments;
  const SequenceTally& tally;
  std::int64_t frames = 0;  // that were to be rendered
  int jobs = 1;
  double seconds = 0;
  std::string shortage;  // why there are not all frames, in a sentence; empty: there are
  std::function<void()> savePreset = {};  // called if all went well and it is wanted
};

// Throws Failure unless all frames are there.
void EndSequence(const SequenceEnding& ending);

// Whether frames that exist are replaced.
bool MayReplaceFrames(const RenderArguments& arguments);
// Throws Failure that names frames that exist and may not be replaced, if there are any.
void RefuseExisting(const RenderArguments& arguments, const std::string& existing);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_SEQUENCE_ENDING_H_
