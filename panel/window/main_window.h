// The window: menus, docks, files in and out.
#ifndef VITRELL_PANEL_WINDOW_MAIN_WINDOW_H_
#define VITRELL_PANEL_WINDOW_MAIN_WINDOW_H_

#include <QMainWindow>
#include <QString>
#include <filesystem>
#include <memory>
#include <optional>

#include "panel/model/opener.h"
#include "panel/model/recovery.h"
#include "panel/model/thumbnails.h"
#include "panel/window/message_bar.h"
#include "panel/window/preset_dock.h"
#include "panel/window/recent_files.h"
#include "panel/window/render_strip.h"
#include "panel/window/workspace.h"

class QDockWidget;
class QLabel;

namespace vitrell::panel {

struct WindowOrder {
  std::shared_ptr<const headless::EffectModule> module;
  std::filesystem::path effect;          // as the user named it; empty: the usual one
  std::filesystem::path sessionFolder;   // where Recovery keeps its files
  std::filesystem::path shippedPresets;  // those that come with the program; empty: there are none
};

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  explicit MainWindow(const WindowOrder& order);
  ~MainWindow() override;
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;

  // Failures are told in the message bar; what was open stays.
  void Open(const std::filesystem::path& file);
  void LoadPreset(const std::filesystem::path& file);
  bool SavePreset(const std::filesystem::path& file);
  // Replaces what is there.
  void RenderTo(const std::filesystem::path& output);
  // Offers what a program that ended too early left behind.
  void OfferLostSession();

  Workspace& Work() { return *work_; }
  MessageBar& Messages() { return *messages_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void MakeWidgets();
  void MakeMenus();
  void MakeFileMenu();
  void MakeEditMenu();
  void MakeViewMenu();
  void MakeTimeMenu();
  void MakeHelpMenu();
  void RestorePlaces();
  void SavePlaces() const;

  void TakeOpened(const OpenedSource& opened);
  void TakeAnswer(const RenderAnswer& answer);
  void ShowTitle();
  void ShowPresets();
  void TellProblem(const QString& message);

  void AskForFile();
  void AskForSequence();
  void AskForPreset();
  void SaveOrAsk();
  void AskAndSave();
  bool SaveBeforeClosing();
  void AskAndRender();
  bool MayReplaceFrames(const QString& output);
  void CopyCommand();
  void TellAbout();
  QStringList ArgumentsFor(const std::filesystem::path& output);
  bool HasPicture();
  void TakeLostSettings(const std::filesystem::path& opened);

  WindowOrder order_;
  std::unique_ptr<Workspace> work_;
  std::unique_ptr<Recovery> recovery_;
  Opener opener_;
  Thumbnails thumbnails_;
  MessageBar* messages_;
  PresetDock* presets_;
  RecentFiles* recent_;
  RenderStrip* strip_;
  std::optional<LostSession> lost_;  // that is being restored
  QLabel* facts_;
  QDockWidget* time_ = nullptr;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WINDOW_MAIN_WINDOW_H_
