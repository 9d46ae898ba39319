// What the window is made of, and what it shows.
#include "panel/window/main_window.h"

#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QVBoxLayout>

#include "panel/model/path_text.h"
#include "panel/model/places.h"

namespace vitrell::panel {
namespace {

QDockWidget* MakeDock(const char* name, const QString& title, QWidget* content, QWidget* parent) {
  auto* dock = new QDockWidget(title, parent);
  dock->setObjectName(name);
  dock->setWidget(content);
  return dock;
}

// A first window leaves some of the screen free.
QSize UsualSize(const QScreen& screen) { return screen.availableSize() * 0.85; }

}  // namespace

MainWindow::MainWindow(const WindowOrder& order)
    : order_(order),
      work_(std::make_unique<Workspace>(order.module)),
      recovery_(std::make_unique<Recovery>(work_->Edited(), order.sessionFolder)),
      thumbnails_(order.module, work_->Edited().Panel()),
      messages_(new MessageBar),
      presets_(new PresetDock(this)),
      recent_(new RecentFiles(this)),
      strip_(new RenderStrip),
      facts_(new QLabel) {
  MakeWidgets();
  MakeMenus();
  setAcceptDrops(true);
  connect(&opener_, &Opener::Opened, this, &MainWindow::TakeOpened);
  connect(&thumbnails_, &Thumbnails::Made, presets_, &PresetDock::ShowThumbnail);
  connect(work_.get(), &Workspace::Complained, this, &MainWindow::TellProblem);
  connect(work_.get(), &Workspace::Answered, this, &MainWindow::TakeAnswer);
  connect(&work_->Edited().Undo(), &QUndoStack::cleanChanged, this, &MainWindow::ShowTitle);
  connect(presets_, &PresetDock::Chosen, this,
          [this](const QString& file) { LoadPreset(file.toStdString()); });
  connect(recent_, &RecentFiles::Chosen, this,
          [this](const QString& file) { Open(file.toStdString()); });
  connect(strip_, &RenderStrip::Finished, this, [this](bool done, const QString& message) {
    done ? messages_->ShowNote(message) : messages_->ShowProblem(message);
  });
  RestorePlaces();
  ShowPresets();
  ShowTitle();
}

// The widgets go before what they show.
MainWindow::~MainWindow() {
  disconnect(work_.get(), nullptr, this, nullptr);
  disconnect(&work_->Edited().Undo(), nullptr, this, nullptr);
  delete takeCentralWidget();
  for (QDockWidget* dock : findChildren<QDockWidget*>()) delete dock;
}

void MainWindow::MakeWidgets() {
  auto* central = new QWidget(this);
  auto* layout = new QVBoxLayout(central);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(messages_);
  layout->addWidget(&work_->View(), 1);
  setCentralWidget(central);
  addDockWidget(Qt::RightDockWidgetArea,
                MakeDock("controls", tr("Effect Controls"), &work_->Controls(), this));
  addDockWidget(Qt::LeftDockWidgetArea, presets_);
  addDockWidget(Qt::BottomDockWidgetArea,
                time_ = MakeDock("time", tr("Time"), &work_->Time(), this));
  // A picture has no time to speak of; its menu entry shows it all the same.
  time_->hide();
  statusBar()->addWidget(facts_);
  statusBar()->addPermanentWidget(strip_);
  facts_->setText(tr("Open a picture, a sequence or a video, or drop one here."));
}

void MainWindow::RestorePlaces() {
  const QSettings settings;
  resize(UsualSize(*screen()));
  resizeDocks(findChildren<QDockWidget*>("controls") + findChildren<QDockWidget*>("presets"),
              {width() * 3 / 10, width() * 15 / 100}, Qt::Horizontal);
  restoreGeometry(settings.value("window/geometry").toByteArray());
  restoreState(settings.value("window/docks").toByteArray());
}

void MainWindow::SavePlaces() const {
  QSettings settings;
  settings.setValue("window/geometry", saveGeometry());
  settings.setValue("window/docks", saveState());
}

void MainWindow::TakeOpened(const OpenedSource& opened) {
  if (opened.source == nullptr) {
    TellProblem(opened.message);
    TakeLostSettings(opened.file);
    return;
  }
  const bool isFirst = work_->Shown() == nullptr;
  work_->Show(opened.source, opened.first);
  time_->setVisible(opened.source->IsClip());
  recent_->Add(std::filesystem::absolute(opened.file));
  recovery_->SetSource(opened.file);
  const int bits = opened.first->world.Deep() ? 16 : 8;
  facts_->setText(tr("%1 \u00d7 %2, %3 bits in the effect")
                      .arg(opened.first->Width())
                      .arg(opened.first->Height())
                      .arg(bits));
  thumbnails_.Make(opened.first, presets_->Presets());
  // A preset that was loaded before could not be scaled to the picture.
  const std::filesystem::path preset = work_->Edited().PresetFile();
  if (isFirst && !preset.empty() && !work_->Edited().IsChanged()) LoadPreset(preset);
  TakeLostSettings(opened.file);
  ShowTitle();
}

// Complaints come by a signal of their own.
void MainWindow::TakeAnswer(const RenderAnswer& answer) {
  if (!answer.exact) return;
  statusBar()->showMessage(tr("Exact frame in %1 ms").arg(qRound(answer.seconds * 1000)), 4000);
}

void MainWindow::ShowTitle() {
  const std::shared_ptr<Source>& source = work_->Shown();
  const std::filesystem::path& preset = work_->Edited().PresetFile();
  QString title = source == nullptr ? tr("Vitrell") : Text(source->Name().filename());
  if (!preset.empty()) title += " \u2013 " + Text(preset.stem());
  setWindowTitle(title + "[*]");
  setWindowModified(work_->Edited().IsChanged());
}

void MainWindow::ShowPresets() {
  presets_->ShowFolders({order_.shippedPresets, OwnPresets()});
  if (work_->ShownFrame() != nullptr) {
    thumbnails_.Make(work_->ShownFrame(), presets_->Presets());
  }
}

void MainWindow::TellProblem(const QString& message) { messages_->ShowProblem(message); }

}  // namespace vitrell::panel
