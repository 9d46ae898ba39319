// The files of a sequence's render, compared before any work.
#ifndef VITRELL_CLI_SEQUENCE_FILES_H_
#define VITRELL_CLI_SEQUENCE_FILES_H_

#include <string>

#include "cli/arguments.h"
#include "cli/sequence_plan.h"

namespace vitrell::cli {

// Refuses files that are written (frames, status, report, preset) and would replace one another or
// what is read, whatever names or links lead there; a preset may be updated in place. Throws
// Failure. Leaves the plan at its first frame.
void CheckSequenceFiles(const RenderArguments& arguments, const std::string& statusFile,
                        SequencePlan& plan);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_SEQUENCE_FILES_H_
