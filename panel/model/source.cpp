// Pictures and sequences of them.
#include "panel/model/source.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <utility>

#include "media/exchange.h"
#include "media/formats.h"
#include "media/sequence.h"
#include "panel/model/video_source.h"

namespace vitrell::panel {
namespace {

// What the command line takes, too, where nothing is told.
constexpr double kUsualRate = 25;

class PictureSource : public Source {
 public:
  explicit PictureSource(std::filesystem::path file) : file_(std::move(file)) {}

  const std::filesystem::path& Name() const override { return file_; }
  std::int64_t FrameCount() const override { return 1; }
  double FramesPerSecond() const override { return kUsualRate; }
  std::int64_t NumberOf(std::int64_t) const override { return 0; }
  std::shared_ptr<const SourceFrame> Read(std::int64_t) override {
    const std::lock_guard lock(mutex_);
    if (frame_ == nullptr) frame_ = FrameOfPicture(file_, 0);
    return frame_;
  }

 private:
  std::filesystem::path file_;
  std::mutex mutex_;
  std::shared_ptr<const SourceFrame> frame_;
};

class SequenceSource : public Source {
 public:
  explicit SequenceSource(media::Sequence sequence) : sequence_(std::move(sequence)) {
    const media::FrameSet found = sequence_.FramesInFolder();
    media::FrameCursor cursor(found);
    while (const std::optional<std::int64_t> frame = cursor.Next()) numbers_.push_back(*frame);
    if (numbers_.empty()) {
      throw media::Failure(media::kFailed, sequence_.Name().string() +
                                               ": there is no frame of this name. Check the "
                                               "folder, or open a single picture.");
    }
  }

  const std::filesystem::path& Name() const override { return sequence_.Name(); }
  std::int64_t FrameCount() const override { return static_cast<std::int64_t>(numbers_.size()); }
  double FramesPerSecond() const override { return kUsualRate; }
  std::int64_t NumberOf(std::int64_t index) const override {
    return numbers_.at(static_cast<std::size_t>(index));
  }
  std::shared_ptr<const SourceFrame> Read(std::int64_t index) override {
    const std::int64_t number = NumberOf(index);
    const std::lock_guard lock(mutex_);
    if (frame_ == nullptr || frame_->number != number) {
      frame_ = FrameOfPicture(sequence_.FileOf(number), number);
    }
    return frame_;
  }

 private:
  media::Sequence sequence_;
  std::vector<std::int64_t> numbers_;
  std::mutex mutex_;
  std::shared_ptr<const SourceFrame> frame_;  // that was read last
};

}  // namespace

std::shared_ptr<const SourceFrame> FrameOfPicture(const std::filesystem::path& file,
                                                  std::int64_t number) {
  // What the picture library prints is silenced for the whole process while a file is read.
  static std::mutex oneAtATime;
  const std::lock_guard lock(oneAtATime);
  auto picture = std::make_shared<media::Picture>(media::ReadPicture(file, {}));
  media::Given given = media::GiveToEffect(*picture, picture->IsDeep());
  return std::make_shared<SourceFrame>(
      SourceFrame{std::move(given.world), number, given.clippedPixels, std::move(picture)});
}

std::unique_ptr<Source> OpenSource(const std::filesystem::path& file) {
  std::error_code ignored;
  const bool exists = std::filesystem::exists(file, ignored);
  if (!exists) {
    if (auto sequence = media::Sequence::Find(file)) {
      return std::make_unique<SequenceSource>(*std::move(sequence));
    }
  }
  const bool isPicture = !exists || std::filesystem::is_directory(file, ignored) ||
                         media::FormatOfFile(file) != nullptr || !IsVideo(file);
  if (!isPicture) return OpenVideoSource(file);
  auto picture = std::make_unique<PictureSource>(file);
  static_cast<void>(picture->Read(0));  // Tells what is wrong with it.
  return picture;
}

std::filesystem::path SequenceAround(const std::filesystem::path& file) {
  const std::string stem = file.stem().string();
  const std::size_t last = stem.find_last_not_of("0123456789");
  const std::size_t begin = last == std::string::npos ? 0 : last + 1;
  if (begin == stem.size()) return {};
  const std::string name =
      stem.substr(0, begin) + std::string(stem.size() - begin, '#') + file.extension().string();
  std::filesystem::path pattern = file.parent_path() / name;
  try {
    const auto sequence = media::Sequence::Find(pattern);
    if (sequence && sequence->FramesInFolder().Size() > 1) return pattern;
  } catch (const media::Failure&) {
    // Names with "#" of their own, folders that cannot be listed: then it is a picture alone.
  }
  return {};
}

}  // namespace vitrell::panel
