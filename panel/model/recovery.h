// What is being edited, kept on disk until the program is closed as it should be.
#ifndef VITRELL_PANEL_MODEL_RECOVERY_H_
#define VITRELL_PANEL_MODEL_RECOVERY_H_

#include <QFuture>
#include <QLockFile>
#include <QObject>
#include <QTimer>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "panel/model/document.h"

namespace vitrell::panel {

// What a program that ended too early left behind.
struct LostSession {
  std::filesystem::path preset;  // all settings
  std::filesystem::path source;  // what was open; empty: nothing
};

// Writes a preset kDelay after the last change, aside: to be sure that a file is on the disk may
// take long. Several programs may run side by side: each has files of its own and a lock on them.
class Recovery : public QObject {
  Q_OBJECT

 public:
  static constexpr int kDelayMilliseconds = 1000;

  // The document must outlive it.
  Recovery(Document& document, std::filesystem::path folder, QObject* parent = nullptr);
  // Removes what was written: the program is closed as it should be.
  ~Recovery() override;
  Recovery(const Recovery&) = delete;
  Recovery& operator=(const Recovery&) = delete;

  void SetSource(const std::filesystem::path& source);
  // Here and without delay. Failures are left alone: nothing depends on it while the program runs.
  void WriteNow();

  // The newest one that no running program owns. It stays until it is dropped.
  static std::optional<LostSession> FindLost(const std::filesystem::path& folder);
  static void Drop(const LostSession& session);
  // Where sessions are usually kept.
  static std::filesystem::path UsualFolder();

 private:
  struct Files {
    std::filesystem::path preset;
    std::string text;
    std::string source;
  };

  static void Write(const Files& files);
  bool HasAnything() const { return document_.IsChanged() || !source_.empty(); }
  Files FilesNow() const;
  void WriteAside();

  Document& document_;
  std::filesystem::path preset_;
  std::filesystem::path source_;
  std::unique_ptr<QLockFile> lock_;
  QTimer timer_;
  QFuture<void> writing_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_RECOVERY_H_
