// How the command line tells that something went wrong.
//
// Every failure is one message that names the file or option, the cause and the remedy, and one
// exit code. Functions of this folder throw Failure; nothing but RunCommandLine catches it.
#ifndef VITRELL_CLI_FAILURE_H_
#define VITRELL_CLI_FAILURE_H_

#include <stdexcept>
#include <string>

namespace vitrell::cli {

enum ExitCode : int {
  kDone = 0,
  kFailed = 1,       // a file or the effect
  kWrongUsage = 2,   // an option, a control's name or value
  kCancelled = 130,  // Ctrl-C or a termination request
};

class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}
  ExitCode code() const { return code_; }

 private:
  ExitCode code_;
};

// A text that is no value for a control. The catcher knows where the text came from (an option or
// a preset) and puts that in front of the message.
class ValueError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_FAILURE_H_
