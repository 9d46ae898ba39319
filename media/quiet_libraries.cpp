// Turning standard error away for a while.
#include "media/quiet_libraries.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace vitrell::media {

QuietLibraries::QuietLibraries() {
  std::fflush(stderr);
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0) return;
  standardError_ = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
  if (standardError_ >= 0) ::dup2(nowhere, STDERR_FILENO);
  ::close(nowhere);
}

QuietLibraries::~QuietLibraries() {
  if (standardError_ < 0) return;
  std::fflush(stderr);
  ::dup2(standardError_, STDERR_FILENO);
  ::close(standardError_);
}

}  // namespace vitrell::media
