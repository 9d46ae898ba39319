// Presets as small pictures, rendered on what is looked at.
#ifndef VITRELL_PANEL_MODEL_THUMBNAILS_H_
#define VITRELL_PANEL_MODEL_THUMBNAILS_H_

#include <QImage>
#include <QObject>
#include <QString>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "headless/effect_module.h"
#include "look/control.h"
#include "panel/model/source.h"

namespace vitrell::panel {

struct Thumbnail {
  std::filesystem::path preset;
  QImage image;     // null if the preset cannot be shown
  QString message;  // then: why, and what to do
};

// Works aside, one preset after the other.
class Thumbnails : public QObject {
  Q_OBJECT

 public:
  static constexpr int kWidth = 192;

  // The panel must outlive it.
  Thumbnails(std::shared_ptr<const headless::EffectModule> module, const look::Panel& panel,
             QObject* parent = nullptr);
  ~Thumbnails() override;
  Thumbnails(const Thumbnails&) = delete;
  Thumbnails& operator=(const Thumbnails&) = delete;

  // In place of all that has not been made yet.
  void Make(std::shared_ptr<const SourceFrame> frame, std::vector<std::filesystem::path> presets);

 Q_SIGNALS:
  void Made(const vitrell::panel::Thumbnail& thumbnail);

 protected:
  bool event(QEvent* event) override;

 private:
  void Run(const std::shared_ptr<const headless::EffectModule>& module);

  const look::Panel& panel_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::shared_ptr<const SourceFrame> frame_;
  std::deque<std::filesystem::path> waiting_;
  std::deque<Thumbnail> made_;
  bool ends_ = false;
  std::atomic<bool> cancel_ = false;  // what is being made is not wanted any more
  std::thread thread_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_THUMBNAILS_H_
