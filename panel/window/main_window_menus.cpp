// Menus and their keys.
#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <functional>

#include "panel/window/main_window.h"

namespace vitrell::panel {

void MainWindow::MakeMenus() {
  MakeFileMenu();
  MakeEditMenu();
  MakeViewMenu();
  MakeTimeMenu();
  MakeHelpMenu();
}

void MainWindow::MakeFileMenu() {
  QMenu* menu = menuBar()->addMenu(tr("&File"));
  menu->addAction(tr("&Open\u2026"), QKeySequence::Open, this, &MainWindow::AskForFile);
  menu->addAction(tr("Open as &Sequence\u2026"), QKeySequence("Ctrl+Shift+O"), this,
                  &MainWindow::AskForSequence);
  menu->addMenu(recent_);
  menu->addSeparator();
  menu->addAction(tr("&Load Preset\u2026"), QKeySequence("Ctrl+L"), this,
                  &MainWindow::AskForPreset);
  menu->addAction(tr("Save &Preset"), QKeySequence::Save, this, &MainWindow::SaveOrAsk);
  menu->addAction(tr("Save Preset &As\u2026"), QKeySequence("Ctrl+Shift+S"), this,
                  &MainWindow::AskAndSave);
  menu->addSeparator();
  menu->addAction(tr("&Render to File\u2026"), QKeySequence("Ctrl+R"), this,
                  &MainWindow::AskAndRender);
  menu->addAction(tr("&Copy as Command Line"), QKeySequence("Ctrl+Shift+C"), this,
                  &MainWindow::CopyCommand);
  menu->addSeparator();
  menu->addAction(tr("&Quit"), QKeySequence("Ctrl+Q"), this, &QWidget::close);
}

void MainWindow::MakeEditMenu() {
  QMenu* menu = menuBar()->addMenu(tr("&Edit"));
  QUndoStack& undo = work_->Edited().Undo();
  QAction* undoAction = undo.createUndoAction(this, tr("&Undo"));
  undoAction->setShortcut(QKeySequence::Undo);
  QAction* redoAction = undo.createRedoAction(this, tr("&Redo"));
  redoAction->setShortcuts({QKeySequence("Ctrl+Shift+Z"), QKeySequence("Ctrl+Y")});
  menu->addActions({undoAction, redoAction});
  menu->addSeparator();
  menu->addAction(tr("Reset &All Controls"), QKeySequence("Ctrl+Shift+R"), &work_->Edited(),
                  &Document::ResetAll);
}

void MainWindow::MakeViewMenu() {
  QMenu* menu = menuBar()->addMenu(tr("&View"));
  menu->addActions(work_->View().ViewActions());
  menu->addSeparator();
  int number = 0;
  for (const char* name : {"controls", "presets", "time"}) {
    QAction* toggle = findChild<QDockWidget*>(name)->toggleViewAction();
    toggle->setShortcut(QKeySequence(QString("Ctrl+%1").arg(++number)));
    menu->addAction(toggle);
  }
}

void MainWindow::MakeTimeMenu() {
  QMenu* menu = menuBar()->addMenu(tr("&Time"));
  TimeLine& time = work_->Time();
  const auto add = [&](const QString& text, const QKeySequence& key,
                       const std::function<void()>& done) {
    QAction* action = menu->addAction(text);
    action->setShortcut(key);
    connect(action, &QAction::triggered, &time, done);
  };
  add(tr("&Play or Pause"), Qt::Key_P, [&time] { time.Play(!time.IsPlaying()); });
  add(tr("One Frame &On"), Qt::Key_Period, [&time] { time.Step(1); });
  add(tr("One Frame &Back"), Qt::Key_Comma, [&time] { time.Step(-1); });
}

void MainWindow::MakeHelpMenu() {
  QMenu* menu = menuBar()->addMenu(tr("&Help"));
  menu->addAction(tr("&About Vitrell"), this, &MainWindow::TellAbout);
}

void MainWindow::TellAbout() {
  QString text;
  try {
    text = QString::fromStdString(headless::EffectHost(order_.module).About());
  } catch (const headless::HostError& error) {
    text = QString::fromStdString(error.what());
  }
  // The host's line ends.
  QMessageBox::about(this, tr("About Vitrell"), text.replace('\r', '\n'));
}

}  // namespace vitrell::panel
