// Opening files aside.
#ifndef VITRELL_PANEL_MODEL_OPENER_H_
#define VITRELL_PANEL_MODEL_OPENER_H_

#include <QFutureWatcher>
#include <QObject>
#include <QString>
#include <filesystem>
#include <memory>

#include "panel/model/source.h"

namespace vitrell::panel {

struct OpenedSource {
  std::filesystem::path file;
  std::shared_ptr<Source> source;            // null after a failure
  std::shared_ptr<const SourceFrame> first;  // its first frame
  QString message;                           // of a failure: file, cause and remedy
};

class Opener : public QObject {
  Q_OBJECT

 public:
  explicit Opener(QObject* parent = nullptr);
  // Waits for what is being read.
  ~Opener() override;
  Opener(const Opener&) = delete;
  Opener& operator=(const Opener&) = delete;

  // Opened follows, unless another file is asked for before.
  void Open(const std::filesystem::path& file);

 Q_SIGNALS:
  void Opened(const vitrell::panel::OpenedSource& opened);

 private:
  QFutureWatcher<OpenedSource> watcher_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_OPENER_H_
