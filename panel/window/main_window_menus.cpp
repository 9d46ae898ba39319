// Menus and their keys.
#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QMenuBar>
#include <QMessageBox>

#include "panel/window/main_window.h"

namespace vitrell::panel {

QAction* MainWindow::Add(QMenu* menu, const QString& text, const QKeySequence& key,
                         void (MainWindow::*done)()) {
  QAction* action = menu->addAction(text);
  action->setShortcut(key);
  connect(action, &QAction::triggered, this, done);
  return action;
}

void MainWindow::MakeMenus() {
  MakeFileMenu();
  MakeEditMenu();
  MakeViewMenu();
  MakeHelpMenu();
}

void MainWindow::MakeFileMenu() {
  QMenu* menu = menuBar()->addMenu(tr("&File"));
  Add(menu, tr("&Open\u2026"), QKeySequence::Open, &MainWindow::AskForFile);
  Add(menu, tr("Open as &Sequence\u2026"), QKeySequence("Ctrl+Shift+O"),
      &MainWindow::AskForSequence);
  menu->addMenu(recent_);
  menu->addSeparator();
  Add(menu, tr("&Load Preset\u2026"), QKeySequence("Ctrl+L"), &MainWindow::AskForPreset);
  Add(menu, tr("Save &Preset"), QKeySequence::Save, &MainWindow::SaveOrAsk);
  Add(menu, tr("Save Preset &As\u2026"), QKeySequence("Ctrl+Shift+S"), &MainWindow::AskAndSave);
  menu->addSeparator();
  Add(menu, tr("&Render to File\u2026"), QKeySequence("Ctrl+R"), &MainWindow::AskAndRender);
  Add(menu, tr("&Copy as Command Line"), QKeySequence("Ctrl+Shift+C"), &MainWindow::CopyCommand);
  menu->addSeparator();
  QAction* quit = menu->addAction(tr("&Quit"));
  quit->setShortcut(QKeySequence("Ctrl+Q"));
  connect(quit, &QAction::triggered, this, &QWidget::close);
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
  QAction* reset = menu->addAction(tr("Reset &All Controls"));
  reset->setShortcut(QKeySequence("Ctrl+Shift+R"));
  connect(reset, &QAction::triggered, &work_->Edited(), &Document::ResetAll);
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

void MainWindow::MakeHelpMenu() {
  QMenu* menu = menuBar()->addMenu(tr("&Help"));
  Add(menu, tr("&About Vitrell"), {}, &MainWindow::TellAbout);
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
