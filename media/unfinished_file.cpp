// A file name that signal handlers may read.
#include "media/unfinished_file.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <climits>

namespace vitrell::media {
namespace {

std::array<char, PATH_MAX> g_unfinishedFile{};
std::atomic<bool> g_hasUnfinishedFile{false};
static_assert(std::atomic<bool>::is_always_lock_free, "signal handlers must not lock");

}  // namespace

void SetUnfinishedFile(const std::string& file) {
  g_hasUnfinishedFile = false;
  if (file.empty() || file.size() >= g_unfinishedFile.size()) return;
  file.copy(g_unfinishedFile.data(), file.size());
  g_unfinishedFile[file.size()] = '\0';
  g_hasUnfinishedFile = true;
}

void RemoveUnfinishedFile() {
  if (g_hasUnfinishedFile) ::unlink(g_unfinishedFile.data());
}

}  // namespace vitrell::media
