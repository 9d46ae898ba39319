// One thread, one small copy of the frame.
#include "panel/model/thumbnails.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

#include "look/preset.h"
#include "panel/model/frame_effect.h"
#include "panel/model/world_image.h"

namespace vitrell::panel {
namespace {

// At least one pixel high.
std::shared_ptr<const SourceFrame> SmallCopy(const SourceFrame& frame) {
  const int width = std::min(frame.Width(), Thumbnails::kWidth);
  const int height = std::max(1, frame.Height() * width / frame.Width());
  return std::make_shared<SourceFrame>(
      SourceFrame{ScaledWorld(frame.world, {width, height}), frame.number, 0, nullptr});
}

// The thread's own: the effect, and the frame in both sizes.
class Maker {
 public:
  Maker(std::shared_ptr<const headless::EffectModule> module, const look::Panel& panel)
      : module_(std::move(module)), panel_(panel) {}

  Thumbnail Make(const std::shared_ptr<const SourceFrame>& frame,
                 const std::filesystem::path& preset, std::atomic<bool>& cancel) {
    Thumbnail thumbnail{preset, {}, {}};
    try {
      Prepare(frame);
      const EffectOutcome outcome = effect_->Render({small_, SmallSettings(preset), 1, &cancel});
      thumbnail.message = outcome.message;
      if (outcome.world != nullptr) thumbnail.image = ImageOf(*outcome.world);
    } catch (const std::exception& error) {
      thumbnail.message = QString::fromStdString(error.what());
    }
    return thumbnail;
  }

 private:
  void Prepare(const std::shared_ptr<const SourceFrame>& frame) {
    if (!effect_) effect_.emplace(module_);
    if (frame_ == frame) return;
    small_ = SmallCopy(*frame);
    frame_ = frame;
  }

  // A preset that tells no width was made for the picture that is looked at.
  look::Settings SmallSettings(const std::filesystem::path& preset) const {
    look::Settings loaded(panel_);
    look::LoadPreset(preset, loaded);
    static_cast<void>(loaded.FitTo(frame_->Width()));
    look::Settings still = loaded.At(static_cast<double>(frame_->number), {});
    for (const look::Control& control : panel_.controls) {
      still.SetMadeFor(control, frame_->Width());
    }
    static_cast<void>(still.FitTo(small_->Width()));
    return still;
  }

  std::shared_ptr<const headless::EffectModule> module_;
  const look::Panel& panel_;
  std::optional<FrameEffect> effect_;
  std::shared_ptr<const SourceFrame> frame_;
  std::shared_ptr<const SourceFrame> small_;
};

}  // namespace

Thumbnails::Thumbnails(std::shared_ptr<const headless::EffectModule> module,
                       const look::Panel& panel, QObject* parent)
    : QObject(parent),
      panel_(panel),
      thread_([this, module = std::move(module)] { Run(module); }) {}

Thumbnails::~Thumbnails() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
    cancel_ = true;
  }
  wake_.notify_all();
  thread_.join();
}

void Thumbnails::Make(std::shared_ptr<const SourceFrame> frame,
                      std::vector<std::filesystem::path> presets) {
  const std::lock_guard lock(mutex_);
  frame_ = std::move(frame);
  waiting_.assign(presets.begin(), presets.end());
  cancel_ = true;
  wake_.notify_all();
}

bool Thumbnails::event(QEvent* event) {
  if (event->type() != QEvent::User) return QObject::event(event);
  std::deque<Thumbnail> made;
  {
    const std::lock_guard lock(mutex_);
    made.swap(made_);
  }
  for (const Thumbnail& thumbnail : made) Q_EMIT Made(thumbnail);
  return true;
}

void Thumbnails::Run(const std::shared_ptr<const headless::EffectModule>& module) {
  Maker maker(module, panel_);
  std::unique_lock lock(mutex_);
  while (true) {
    wake_.wait(lock, [this] { return ends_ || !waiting_.empty(); });
    if (ends_) return;
    const std::filesystem::path preset = waiting_.front();
    waiting_.pop_front();
    const std::shared_ptr<const SourceFrame> frame = frame_;
    cancel_ = false;
    lock.unlock();
    Thumbnail thumbnail = maker.Make(frame, preset, cancel_);
    lock.lock();
    if (cancel_) continue;
    made_.push_back(std::move(thumbnail));
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
  }
}

}  // namespace vitrell::panel
