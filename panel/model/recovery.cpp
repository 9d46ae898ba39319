// Three files for each running program: a preset, what was open, and a lock.
#include "panel/model/recovery.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUuid>
#include <QtConcurrentRun>
#include <utility>

#include "panel/model/path_text.h"

namespace vitrell::panel {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPreset = ".json";
constexpr const char* kSource = ".source";
constexpr const char* kLock = ".lock";

fs::path WithEnding(fs::path file, const char* ending) { return file.replace_extension(ending); }

fs::path ReadName(const fs::path& file) {
  QFile text(Text(file));
  if (!text.open(QIODevice::ReadOnly)) return {};
  return text.readAll().toStdString();
}

// What was there stays until all of the new content is on the disk.
bool WriteWhole(const fs::path& file, const std::string& content) {
  QSaveFile output(Text(file));
  return output.open(QIODevice::WriteOnly) &&
         output.write(QByteArray::fromStdString(content)) == static_cast<qint64>(content.size()) &&
         output.commit();
}

}  // namespace

Recovery::Recovery(Document& document, fs::path folder, QObject* parent)
    : QObject(parent), document_(document) {
  QDir().mkpath(Text(folder));
  preset_ = folder / (QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString() + kPreset);
  lock_ = std::make_unique<QLockFile>(Text(WithEnding(preset_, kLock)));
  lock_->setStaleLockTime(0);
  lock_->tryLock(0);
  timer_.setSingleShot(true);
  timer_.setInterval(kDelayMilliseconds);
  connect(&timer_, &QTimer::timeout, this, &Recovery::WriteAside);
  connect(&document_, &Document::Changed, &timer_, qOverload<>(&QTimer::start));
}

Recovery::~Recovery() {
  writing_.waitForFinished();
  Drop({preset_, {}});
  lock_->unlock();
}

void Recovery::SetSource(const fs::path& source) {
  std::error_code error;
  source_ = fs::absolute(source, error);
  timer_.start();
}

Recovery::Files Recovery::FilesNow() const {
  return {preset_, document_.TextOfCopy(preset_), source_.string()};
}

// A full disk is told where the user saves.
void Recovery::Write(const Files& files) {
  if (!WriteWhole(files.preset, files.text)) return;
  static_cast<void>(WriteWhole(WithEnding(files.preset, kSource), files.source));
}

void Recovery::WriteNow() {
  timer_.stop();
  writing_.waitForFinished();
  if (HasAnything()) Write(FilesNow());
}

void Recovery::WriteAside() {
  if (!HasAnything()) return;
  if (writing_.isRunning()) return timer_.start();
  writing_ = QtConcurrent::run([files = FilesNow()] { Write(files); });
}

std::optional<LostSession> Recovery::FindLost(const fs::path& folder) {
  const QDir files(Text(folder), QString("*") + kPreset, QDir::Time, QDir::Files);
  for (const QFileInfo& file : files.entryInfoList()) {
    const fs::path preset = file.filePath().toStdString();
    // Of a program that does not run any more the lock can be had.
    QLockFile lock(Text(WithEnding(preset, kLock)));
    lock.setStaleLockTime(0);
    if (lock.tryLock(0)) return LostSession{preset, ReadName(WithEnding(preset, kSource))};
  }
  return {};
}

void Recovery::Drop(const LostSession& session) {
  std::error_code ignored;
  fs::remove(session.preset, ignored);
  fs::remove(WithEnding(session.preset, kSource), ignored);
}

fs::path Recovery::UsualFolder() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
  return fs::path(folder.toStdString()) / "recovery";
}

}  // namespace vitrell::panel
