// Numbers in file names.
#include "media/sequence.h"

#include <algorithm>
#include <charconv>
#include <regex>
#include <string_view>
#include <system_error>
#include <vector>

#include "media/failure.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

fs::path FolderOf(const fs::path& file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

}  // namespace

std::optional<Sequence> Sequence::Find(const fs::path& name) {
  static const std::regex kPlace("#+|@+|%(?:0([0-9]{1,2}))?d");
  const std::string file = name.filename().string();
  const std::sregex_iterator place(file.begin(), file.end(), kPlace);
  if (place == std::sregex_iterator()) return std::nullopt;
  if (std::next(place) != std::sregex_iterator()) {
    throw Failure(kWrongUsage, name.string() +
                                   ": has several places for a frame's number. Leave one of the "
                                   "rows of # or @, or %04d.");
  }
  Sequence sequence;
  sequence.name_ = name;
  sequence.before_ = place->prefix().str();
  sequence.after_ = place->suffix().str();
  sequence.digits_ = place->str()[0] != '%' ? place->str().size()
                     : (*place)[1].matched  ? static_cast<std::size_t>(std::stoi((*place)[1]))
                                            : 1;
  return sequence;
}

fs::path Sequence::FileOf(std::int64_t frame) const {
  const std::string sign = frame < 0 ? "-" : "";
  const std::string digits = std::to_string(std::abs(frame));
  const std::size_t taken = sign.size() + digits.size();
  const std::string zeros(digits_ > taken ? digits_ - taken : 0, '0');
  return name_.parent_path() / (before_ + sign + zeros + digits + after_);
}

fs::path Sequence::SidecarFile() const {
  std::string start = before_;
  while (!start.empty() && std::string_view("._- ").find(start.back()) != std::string_view::npos) {
    start.pop_back();
  }
  return name_.parent_path() / (start + after_ + ".vitrell.json");
}

std::optional<std::int64_t> Sequence::FrameOf(const std::string& file) const {
  if (file.size() <= before_.size() + after_.size() || !file.starts_with(before_) ||
      !file.ends_with(after_)) {
    return std::nullopt;
  }
  const char* const begin = file.data() + before_.size();
  const char* const end = file.data() + file.size() - after_.size();
  std::int64_t frame = 0;
  const auto [last, error] = std::from_chars(begin, end, frame);
  if (error != std::errc() || last != end) return std::nullopt;
  // Neither too few digits nor extra leading zeros.
  if (FileOf(frame).filename() != file) return std::nullopt;
  return frame;
}

FrameSet Sequence::FramesInFolder() const {
  std::vector<std::int64_t> frames;
  std::error_code error;
  fs::directory_iterator entry(FolderOf(name_), error);
  for (const fs::directory_iterator end; !error && entry != end; entry.increment(error)) {
    const auto frame = FrameOf(entry->path().filename().string());
    if (frame) frames.push_back(*frame);
  }
  if (error) {
    throw Failure(kFailed, name_.string() + ": the folder cannot be read (" + error.message() +
                               "). Check its name and your right to read it.");
  }
  std::sort(frames.begin(), frames.end());
  FrameSet set;
  for (const std::int64_t frame : frames) set.Add(frame);
  return set;
}

}  // namespace vitrell::media
