// How the command line tells that something went wrong.
//
// Every failure is one message that names the file or option, the cause and the remedy, and one
// exit code. Functions of this folder throw Failure; nothing but RunCommandLine catches it.
#ifndef VITRELL_CLI_FAILURE_H_
#define VITRELL_CLI_FAILURE_H_

#include "media/failure.h"

namespace vitrell::cli {

using media::Failure;
using media::kCancelled;
using media::kFailed;
using media::kTerminated;
using media::kTryLater;
using media::kWrongUsage;

// The exit code beside those of failures.
constexpr int kDone = 0;

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_FAILURE_H_
