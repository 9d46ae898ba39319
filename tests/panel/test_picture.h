// A source that needs no file, and waiting for what a renderer answers.
#ifndef VITRELL_TESTS_PANEL_TEST_PICTURE_H_
#define VITRELL_TESTS_PANEL_TEST_PICTURE_H_

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <functional>
#include <memory>
#include <vector>

#include "panel/model/renderer.h"

namespace vitrell::panel {

// Seeded noise over the whole range.
class NoiseSource : public Source {
 public:
  NoiseSource(int width, int height, bool deep, int frames = 1) {
    for (int i = 0; i < frames; ++i) {
      headless::WorldBuffer world(width, height, deep);
      world.FillNoise(static_cast<std::uint64_t>(i) + 1);
      frames_.push_back(
          std::make_shared<SourceFrame>(SourceFrame{std::move(world), i, 0, nullptr}));
    }
  }
  const std::filesystem::path& Name() const override { return name_; }
  std::int64_t FrameCount() const override { return static_cast<std::int64_t>(frames_.size()); }
  double FramesPerSecond() const override { return 25; }
  std::int64_t NumberOf(std::int64_t index) const override { return index; }
  std::shared_ptr<const SourceFrame> Read(std::int64_t index) override {
    return frames_.at(static_cast<std::size_t>(index));
  }

 private:
  std::filesystem::path name_ = "noise";
  std::vector<std::shared_ptr<const SourceFrame>> frames_;
};

// Runs the event loop until then; false after half a minute.
inline bool WaitUntil(const std::function<bool()>& isDone) {
  const QDeadlineTimer deadline(30000);
  while (!isDone()) {
    if (deadline.hasExpired()) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
  }
  return true;
}

}  // namespace vitrell::panel

#endif  // VITRELL_TESTS_PANEL_TEST_PICTURE_H_
