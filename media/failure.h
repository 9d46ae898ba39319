// Errors of reading and writing files.
//
// Every failure is one message that names the file, the cause and the remedy. Functions of this
// folder throw Failure.
#ifndef VITRELL_MEDIA_FAILURE_H_
#define VITRELL_MEDIA_FAILURE_H_

#include <stdexcept>
#include <string>

namespace vitrell::media {

// The values are the exit codes of programs that end with the failure.
enum FailureKind : int {
  kFailed = 1,        // a file or the effect
  kWrongUsage = 2,    // an option, a control's name or value
  kTryLater = 75,     // temporary: disk full, out of memory, a folder that went away
  kCancelled = 130,   // asked to stop
  kTerminated = 143,  // stopped by SIGTERM, where frames are rendered
};

class Failure : public std::runtime_error {
 public:
  Failure(FailureKind kind, const std::string& message)
      : std::runtime_error(message), kind_(kind) {}
  FailureKind Kind() const { return kind_; }

 private:
  FailureKind kind_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_FAILURE_H_
