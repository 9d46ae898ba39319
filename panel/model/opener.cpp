// One file at a time, on a thread of Qt's pool.
#include "panel/model/opener.h"

#include <QtConcurrentRun>
#include <exception>

namespace vitrell::panel {
namespace {

OpenedSource OpenNow(const std::filesystem::path& file) {
  OpenedSource opened;
  opened.file = file;
  try {
    opened.source = OpenSource(file);
    opened.first = opened.source->Read(0);
  } catch (const std::exception& error) {
    opened.source = nullptr;
    opened.message = QString::fromStdString(error.what());
  }
  return opened;
}

}  // namespace

Opener::Opener(QObject* parent) : QObject(parent) {
  connect(&watcher_, &QFutureWatcher<OpenedSource>::finished, this,
          [this] { Q_EMIT Opened(watcher_.result()); });
}

Opener::~Opener() { watcher_.waitForFinished(); }

void Opener::Open(const std::filesystem::path& file) {
  watcher_.setFuture(QtConcurrent::run(OpenNow, file));
}

}  // namespace vitrell::panel
