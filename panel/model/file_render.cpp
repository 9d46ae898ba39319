// The process and what it tells.
#include "panel/model/file_render.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <utility>

namespace vitrell::panel {
namespace {

// Whole stages cannot be interrupted; then the process is ended by force.
constexpr int kMillisecondsToEnd = 5000;

}  // namespace

FileRender::FileRender(std::filesystem::path tool, QObject* parent)
    : QObject(parent), tool_(std::move(tool)) {
  connect(&process_, &QProcess::readyReadStandardError, this, &FileRender::ReadProgress);
  connect(&process_, &QProcess::finished, this, [this](int code, QProcess::ExitStatus status) {
    ReadProgress();
    if (!unread_.isEmpty()) TakeLine(std::exchange(unread_, {}));
    End(status == QProcess::NormalExit && code == 0);
  });
  connect(&process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart) return;
    said_ << tr("%1 could not be started: %2.")
                 .arg(QString::fromStdString(tool_.string()), process_.errorString());
    End(false);
  });
}

FileRender::~FileRender() {
  disconnect(&process_, nullptr, this, nullptr);
  if (!IsRunning()) return;
  process_.terminate();
  if (!process_.waitForFinished(kMillisecondsToEnd)) process_.kill();
  process_.waitForFinished();
}

void FileRender::Start(QStringList arguments) {
  arguments << QStringList{"--progress", "json"};
  unread_.clear();
  said_.clear();
  cancelled_ = false;
  process_.setProgram(QString::fromStdString(tool_.string()));
  process_.setArguments(arguments);
  process_.setStandardInputFile(QProcess::nullDevice());
  process_.start();
}

void FileRender::Cancel() {
  cancelled_ = true;
  process_.terminate();
}

void FileRender::ReadProgress() {
  unread_ += process_.readAllStandardError();
  for (qsizetype end = unread_.indexOf('\n'); end >= 0; end = unread_.indexOf('\n')) {
    TakeLine(unread_.left(end));
    unread_.remove(0, end + 1);
  }
}

void FileRender::TakeLine(const QByteArray& line) {
  const QJsonObject json = QJsonDocument::fromJson(line).object();
  if (json.contains("stage")) {
    Q_EMIT Reached(json["done"].toDouble());
    return;
  }
  if (!json.contains("finished")) {
    said_ << QString::fromUtf8(line);
    return;
  }
  if (json.contains("error")) said_ << json["error"].toString();
  Q_EMIT Progressed(json["finished"].toInteger(), json["frames"].toInteger());
}

void FileRender::End(bool done) {
  said_ << QString::fromUtf8(process_.readAllStandardOutput()).trimmed();
  said_.removeAll("");
  QString message = said_.join('\n');
  if (cancelled_ && !done) message = tr("Cancelled.") + (message.isEmpty() ? "" : "\n" + message);
  Q_EMIT Finished(done, message);
}

}  // namespace vitrell::panel
