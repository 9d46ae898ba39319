// Comparing with the file beside a video.
#include "cli/video_record.h"

#include <filesystem>
#include <system_error>

namespace vitrell::cli {

bool VideoRecord::IsThereAlready(const std::function<media::Fingerprint()>& madeOf, Notes& notes) {
  const std::string& existing = arguments_.frames.existing;
  if (existing.empty() || existing == "fail" || arguments_.dryRun) return false;
  madeOf_ = madeOf();
  std::error_code ignored;
  if (existing != "skip" || !std::filesystem::exists(arguments_.output, ignored)) return false;
  const auto found = media::Sidecar(arguments_.output).Find(arguments_.output);
  if (found && found->IsMadeOfSame(*madeOf_)) return true;
  notes.Advise(arguments_.output +
               (found ? ": is made of something else"
                      : ": is not whole, or nobody knows what it is made of") +
               "; it is rendered again.");
  return false;
}

void VideoRecord::Keep() const {
  if (madeOf_) media::Sidecar(arguments_.output).Put(arguments_.output, *madeOf_);
}

}  // namespace vitrell::cli
