// What is shown, as a file or as a command line.
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QMessageBox>
#include <QStatusBar>

#include "media/failure.h"
#include "media/sequence.h"
#include "panel/model/command_text.h"
#include "panel/model/places.h"
#include "panel/window/main_window.h"

namespace vitrell::panel {

namespace fs = std::filesystem;

bool MainWindow::HasPicture() {
  if (work_->Shown() != nullptr) return true;
  TellProblem(tr("Nothing is open. Open a picture first."));
  return false;
}

QStringList MainWindow::ArgumentsFor(const fs::path& output) {
  Document& document = work_->Edited();
  return RenderArguments({*work_->Shown(), work_->FrameIndex(), document.Settings(), output,
                          order_.effect,
                          document.IsChanged() ? fs::path() : document.PresetFile()});
}

void MainWindow::CopyCommand() {
  if (!HasPicture()) return;
  try {
    const QString line = ShellLine(ArgumentsFor(UsualOutput(*work_->Shown())));
    QApplication::clipboard()->setText(line);
    statusBar()->showMessage(tr("Copied: %1").arg(line), 8000);
  } catch (const media::Failure& failure) {
    TellProblem(QString::fromStdString(failure.what()));
  }
}

void MainWindow::AskAndRender() {
  if (!HasPicture()) return;
  const QString file = QFileDialog::getSaveFileName(
      this, tr("Render to File"), QString::fromStdString(UsualOutput(*work_->Shown()).string()));
  if (!file.isEmpty() && MayReplaceFrames(file)) RenderTo(file.toStdString());
}

// What the dialog asked of a single file.
bool MainWindow::MayReplaceFrames(const QString& output) {
  try {
    const auto frames = media::Sequence::Find(output.toStdString());
    if (!frames || frames->FramesInFolder().IsEmpty()) return true;
  } catch (const media::Failure& failure) {
    TellProblem(QString::fromStdString(failure.what()));
    return false;
  }
  return QMessageBox::question(this, tr("Render to File"),
                               tr("There are frames of the name %1. Replace them?").arg(output)) ==
         QMessageBox::Yes;
}

void MainWindow::RenderTo(const fs::path& output) {
  if (strip_->IsRunning()) {
    TellProblem(tr("Another render is still running. Wait for it, or cancel it below."));
    return;
  }
  try {
    const QStringList arguments = ArgumentsFor(output) << "--force";
    strip_->Start(FindTool(), arguments, QString::fromStdString(output.string()));
  } catch (const media::Failure& failure) {
    TellProblem(QString::fromStdString(failure.what()));
  }
}

}  // namespace vitrell::panel
