// Files in and out, and the end.
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QSettings>
#include <utility>

#include "media/failure.h"
#include "panel/model/path_text.h"
#include "panel/model/places.h"
#include "panel/window/main_window.h"

namespace vitrell::panel {
namespace {

namespace fs = std::filesystem;

// The folder of the last time, which is remembered for each kind of file.
QString FolderOf(const char* kind) {
  return QSettings().value(QString("folders/%1").arg(kind)).toString();
}

fs::path Remember(const char* kind, const QString& file) {
  if (!file.isEmpty()) {
    QSettings().setValue(QString("folders/%1").arg(kind), QFileInfo(file).path());
  }
  return file.toStdString();
}

QString Joined(const std::vector<std::string>& sentences) {
  QStringList lines;
  for (const std::string& sentence : sentences) lines << QString::fromStdString(sentence);
  return lines.join('\n');
}

}  // namespace

void MainWindow::Open(const fs::path& file) { opener_.Open(file); }

void MainWindow::AskForFile() {
  const QString file = QFileDialog::getOpenFileName(this, tr("Open"), FolderOf("pictures"));
  if (!file.isEmpty()) Open(Remember("pictures", file));
}

void MainWindow::AskForSequence() {
  const QString file =
      QFileDialog::getOpenFileName(this, tr("Open any frame of a sequence"), FolderOf("pictures"));
  if (file.isEmpty()) return;
  const fs::path sequence = SequenceAround(Remember("pictures", file));
  if (!sequence.empty()) return Open(sequence);
  TellProblem(tr("%1: there is no other frame beside it, so that it is opened alone. Frames of a "
                 "sequence have a number at the end of their names.")
                  .arg(file));
  Open(file.toStdString());
}

void MainWindow::AskForPreset() {
  const QString file = QFileDialog::getOpenFileName(this, tr("Load Preset"), FolderOf("presets"),
                                                    tr("Presets (*.json)"));
  if (!file.isEmpty()) LoadPreset(Remember("presets", file));
}

void MainWindow::LoadPreset(const fs::path& file) {
  try {
    const std::vector<std::string> notes = work_->Edited().LoadPreset(file);
    if (!notes.empty()) messages_->ShowNote(Joined(notes));
    ShowTitle();
  } catch (const media::Failure& failure) {
    TellProblem(QString::fromStdString(failure.what()));
  }
}

bool MainWindow::SavePreset(const fs::path& file) {
  try {
    const std::vector<std::string> notes = work_->Edited().SavePreset(file);
    if (!notes.empty()) messages_->ShowNote(Joined(notes));
  } catch (const media::Failure& failure) {
    TellProblem(QString::fromStdString(failure.what()));
    return false;
  }
  ShowTitle();
  ShowPresets();
  return true;
}

// The shipped ones stay as they are.
void MainWindow::SaveOrAsk() {
  const fs::path file = work_->Edited().PresetFile();
  if (file.empty() || file.parent_path() == order_.shippedPresets) return AskAndSave();
  SavePreset(file);
}

void MainWindow::AskAndSave() {
  QFileDialog dialog(this, tr("Save Preset"), Text(OwnPresets()), tr("Presets (*.json)"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  // Before it asks whether a file is to be replaced; the browser shows no others.
  dialog.setDefaultSuffix("json");
  dialog.selectFile("look.json");
  if (dialog.exec() == QDialog::Accepted) SavePreset(dialog.selectedFiles().first().toStdString());
}

void MainWindow::OfferLostSession() {
  const std::optional<LostSession> lost = Recovery::FindLost(order_.sessionFolder);
  if (!lost) return;
  const auto restore = [this, session = *lost] {
    lost_ = session;
    if (session.source.empty()) return TakeLostSettings({});
    Open(session.source);
  };
  messages_->Ask(tr("The last session did not end as it should. Its settings were kept."),
                 {{tr("&Restore"), restore},
                  {tr("&Discard"), [session = *lost] { Recovery::Drop(session); }}});
}

// Once its picture is open, to the width of which they belong, or cannot be opened.
void MainWindow::TakeLostSettings(const fs::path& opened) {
  if (!lost_ || lost_->source != opened) return;
  const LostSession session = *std::exchange(lost_, std::nullopt);
  try {
    work_->Edited().TakeCopy(session.preset);
    Recovery::Drop(session);
  } catch (const media::Failure& failure) {
    TellProblem(QString::fromStdString(failure.what()));
  }
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  const QList<QUrl> urls = event->mimeData()->urls();
  if (urls.isEmpty()) return;
  const QString file = urls.first().toLocalFile();
  if (file.isEmpty()) {
    TellProblem(tr("%1 is not on this machine. Save it first.").arg(urls.first().toString()));
  } else if (file.endsWith(".json", Qt::CaseInsensitive)) {
    LoadPreset(file.toStdString());
  } else {
    Open(file.toStdString());
  }
  event->acceptProposedAction();
}

bool MainWindow::SaveBeforeClosing() {
  if (!work_->Edited().IsChanged()) return true;
  const auto answer = QMessageBox::question(
      this, tr("Unsaved preset"), tr("The settings were changed. Save them as a preset?"),
      QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
  if (answer == QMessageBox::Save) SaveOrAsk();
  return answer == QMessageBox::Discard || !work_->Edited().IsChanged();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (strip_->IsRunning() &&
      QMessageBox::question(this, tr("Render"), tr("A file is still being rendered. Cancel it?")) !=
          QMessageBox::Yes) {
    event->ignore();
    return;
  }
  // Now: what ends with the window waits for other renders first, and the file would be written.
  strip_->Cancel();
  if (!SaveBeforeClosing()) {
    event->ignore();
    return;
  }
  SavePlaces();
  event->accept();
}

}  // namespace vitrell::panel
