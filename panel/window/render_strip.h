// A render into a file, in the status bar.
#ifndef VITRELL_PANEL_WINDOW_RENDER_STRIP_H_
#define VITRELL_PANEL_WINDOW_RENDER_STRIP_H_

#include <QString>
#include <QStringList>
#include <QWidget>
#include <filesystem>
#include <memory>

#include "panel/model/file_render.h"

class QLabel;
class QProgressBar;

namespace vitrell::panel {

// Hidden while nothing is rendered.
class RenderStrip : public QWidget {
  Q_OBJECT

 public:
  explicit RenderStrip(QWidget* parent = nullptr);

  bool IsRunning() const { return render_ != nullptr && render_->IsRunning(); }
  void Cancel();
  // Not while another one runs.
  void Start(const std::filesystem::path& tool, const QStringList& arguments,
             const QString& output);

 Q_SIGNALS:
  // `message` tells what was written, or what failed and what to do.
  void Finished(bool done, const QString& message);

 private:
  std::unique_ptr<FileRender> render_;
  QLabel* name_;
  QProgressBar* bar_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WINDOW_RENDER_STRIP_H_
