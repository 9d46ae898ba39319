// Decoding, and remembering what was decoded.
#include "panel/model/video_source.h"

#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "media/pixel_formats.h"
#include "media/video_exchange.h"
#include "media/video_input.h"
#include "media/video_reader.h"

namespace vitrell::panel {
namespace {

constexpr std::size_t kKeptBytes = std::size_t{256} << 20;

int Threads() { return std::max(1, static_cast<int>(std::thread::hardware_concurrency())); }

class VideoSource : public Source {
 public:
  explicit VideoSource(const std::filesystem::path& file)
      : file_(file), count_(std::max<std::int64_t>(1, media::CountVideoFrames(file))) {
    Rewind();
    framesPerSecond_ = av_q2d(reader_->FrameRate());
  }

  const std::filesystem::path& Name() const override { return file_; }
  std::int64_t FrameCount() const override { return count_; }
  double FramesPerSecond() const override { return framesPerSecond_; }
  std::int64_t NumberOf(std::int64_t index) const override { return index; }
  bool IsVideo() const override { return true; }

  std::shared_ptr<const SourceFrame> Read(std::int64_t index) override {
    const std::lock_guard lock(mutex_);
    for (const auto& frame : kept_) {
      if (frame->number == index) return frame;
    }
    if (index < next_) Rewind();
    while (next_ < index) Decode();
    Decode();
    return Keep();
  }

 private:
  void Rewind() {
    reader_.emplace(file_, media::VideoReadOptions{});
    reader_->UseThreads(Threads());
    next_ = 0;
  }

  void Decode() {
    if (!reader_->Next(*decoded_)) {
      throw media::Failure(
          media::kFailed,
          file_.string() + ": frame " + std::to_string(next_) + " cannot be read; the video " +
              (reader_->Damage().empty() ? "has fewer" : reader_->Damage()) + ". Check the file.");
    }
    ++next_;
  }

  std::shared_ptr<const SourceFrame> Keep() {
    const bool deep = media::IsDeep(static_cast<AVPixelFormat>(decoded_->format));
    if (!exchange_ || exchange_->Given().Width() != decoded_->width ||
        exchange_->Given().Height() != decoded_->height) {
      exchange_.emplace(decoded_->width, decoded_->height, deep, Threads());
    }
    exchange_->Give(*decoded_, file_);
    kept_.push_back(
        std::make_shared<SourceFrame>(SourceFrame{exchange_->Given(), next_ - 1, 0, nullptr}));
    const headless::WorldBuffer& world = kept_.back()->world;
    const std::size_t bytes =
        static_cast<std::size_t>(world.RowBytes()) * static_cast<std::size_t>(world.Height());
    while (kept_.size() > 1 && kept_.size() * bytes > kKeptBytes) kept_.pop_front();
    return kept_.back();
  }

  std::filesystem::path file_;
  std::int64_t count_;
  double framesPerSecond_ = 25;  // asked for without the lock while another thread reads
  std::mutex mutex_;             // over what follows
  std::optional<media::VideoReader> reader_;
  media::FrameHandle decoded_ = media::MakeFrame();
  std::optional<media::FrameExchange> exchange_;
  std::int64_t next_ = 0;  // the index that Decode gives
  std::deque<std::shared_ptr<const SourceFrame>> kept_;
};

}  // namespace

bool IsVideo(const std::filesystem::path& file) {
  try {
    const media::VideoReader reader(file, {});
    return true;
  } catch (const media::Failure&) {
    return false;
  }
}

std::unique_ptr<Source> OpenVideoSource(const std::filesystem::path& file) {
  auto source = std::make_unique<VideoSource>(file);
  static_cast<void>(source->Read(0));  // Tells what is wrong with it.
  return source;
}

}  // namespace vitrell::panel
