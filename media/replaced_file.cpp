// Owner, rights and links of files.
#include "media/replaced_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include "media/output_file.h"

namespace vitrell::media {
namespace {

constexpr mode_t kRights = 0777;
constexpr mode_t kAllBits = 07777;  // including set-user-ID, set-group-ID and sticky

// True if owner and group were restored. A user without the right to change the owner may still be
// allowed to set the group.
bool KeepOwner(const struct stat& old, int file, std::vector<std::string>& notices) {
  if (::fchown(file, old.st_uid, old.st_gid) == 0) return true;
  const std::string cause = LastSystemError();
  struct stat made {};
  if (::fstat(file, &made) == 0 && made.st_uid == old.st_uid && made.st_gid == old.st_gid) {
    return true;
  }
  const bool group = ::fchown(file, static_cast<uid_t>(-1), old.st_gid) == 0;
  notices.push_back(std::string("the replaced file's ") + (group ? "owner" : "owner or group") +
                    " cannot be kept (" + cause + ").");
  return false;
}

}  // namespace

std::optional<mode_t> TakeOver(const std::filesystem::path& target, int file,
                               std::vector<std::string>& notices) {
  struct stat old {};
  if (::stat(target.c_str(), &old) != 0 || !S_ISREG(old.st_mode)) return std::nullopt;
  const bool owned = KeepOwner(old, file, notices);
  static_cast<void>(::fchmod(file, (old.st_mode & kRights) | S_IRUSR | S_IWUSR));
  if (old.st_nlink > 1) {
    notices.push_back("the replaced file has " + std::to_string(old.st_nlink) +
                      " names (hard links); the other ones keep the old contents.");
  }
  return old.st_mode & (owned ? kAllBits : kRights);
}

}  // namespace vitrell::media
