// Redirects standard error for a while.
#include "media/quiet_libraries.h"

#include <OpenImageIO/imageio.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <system_error>

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

void SetLibraryThreads(int threads) {
  // The library's pool starts with all cores before it obeys; this is where it looks for another
  // number.
  ::setenv("OPENIMAGEIO_THREADS", std::to_string(threads).c_str(), 1);
  try {
    OIIO::attribute("threads", threads);
  } catch (const std::system_error&) {
    // Not even one thread can be started. The number is set nevertheless.
  }
}

}  // namespace vitrell::media
