// Rendering into files, by the command line.
#ifndef VITRELL_PANEL_MODEL_FILE_RENDER_H_
#define VITRELL_PANEL_MODEL_FILE_RENDER_H_

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <filesystem>

namespace vitrell::panel {

// One call of `vitrell`. Ended, if it still runs, by the destructor.
class FileRender : public QObject {
  Q_OBJECT

 public:
  explicit FileRender(std::filesystem::path tool, QObject* parent = nullptr);
  ~FileRender() override;
  FileRender(const FileRender&) = delete;
  FileRender& operator=(const FileRender&) = delete;

  // The arguments are those of RenderArguments.
  void Start(QStringList arguments);
  // The command line ends without a half-written file; what there is of a video it keeps beside
  // ("out.partial.mkv") and says so. Finished follows.
  void Cancel();
  bool IsRunning() const { return process_.state() != QProcess::NotRunning; }

 Q_SIGNALS:
  // How much of a single picture's work is done, 0 to 1. Not for a sequence or a video.
  void Reached(double part);
  // After each frame of those; `all` is 0 where nobody knows how many there are.
  void Progressed(qint64 done, qint64 all);
  // `message` is what the command line said, in the case of a failure cause and remedy.
  void Finished(bool done, const QString& message);

 private:
  void ReadProgress();
  void TakeLine(const QByteArray& line);
  void End(bool done);

  std::filesystem::path tool_;
  QProcess process_;
  QByteArray unread_;  // the beginning of a line
  QStringList said_;
  bool cancelled_ = false;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_FILE_RENDER_H_
