// `vitrell formats`.
#include <algorithm>
#include <cstdio>
#include <string>

#include "cli/commands.h"
#include "media/formats.h"

namespace vitrell::cli {
namespace {

std::string Extensions(const media::Format& format) {
  std::string text = "." + std::string(format.extensions);
  for (std::size_t at = text.find(' '); at != std::string::npos; at = text.find(' ', at + 1)) {
    text.insert(at + 1, ".");
  }
  return text;
}

const char* Alpha(const media::Format& format) {
  if (!format.alpha) return "no";
  return format.straight ? "straight" : "multiplied";
}

std::string OrDash(std::string_view text) { return text.empty() ? "-" : std::string(text); }

}  // namespace

void RunFormats() {
  constexpr const char* kRow = "%-13s %-21s %-11s %-25s %-11s %-8s %s\n";
  std::printf(kRow, "format", "extensions", "", "depths", "alpha", "profile", "metadata");
  for (const media::Format& format : media::AllFormats()) {
    std::printf(kRow, std::string(format.name).c_str(), Extensions(format).c_str(),
                format.writes ? "read, write" : "read", std::string(format.depths).c_str(),
                Alpha(format), format.profile ? "yes" : "no", OrDash(format.metadata).c_str());
  }
}

}  // namespace vitrell::cli
