// The whole window over a folder of its own, without a display.
#ifndef VITRELL_TESTS_PANEL_WINDOW_FIXTURE_H_
#define VITRELL_TESTS_PANEL_WINDOW_FIXTURE_H_

#include <gtest/gtest.h>
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QKeySequence>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "media/picture_files.h"
#include "panel/random_look.h"
#include "panel/test_picture.h"
#include "panel/window/main_window.h"

namespace vitrell::panel {

namespace fs = std::filesystem;

class WindowTest : public testing::Test {
 protected:
  WindowTest() {
    fs::create_directories(folder_);
    // Nothing of the user's own.
    QCoreApplication::setOrganizationName("vitrell-test");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       QString::fromStdString((folder_ / "settings").string()));
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString((folder_ / "data").string()));
    media::WritePictureFile(picture_, media::NoisePicture(96, 54, 3, OIIO::TypeDesc::UINT8, 5));
    window_ = MakeWindow();
    window_->show();
  }
  ~WindowTest() override {
    window_.reset();
    fs::remove_all(folder_);
  }

  std::unique_ptr<MainWindow> MakeWindow() const {
    return std::make_unique<MainWindow>(
        WindowOrder{module_, {}, folder_ / "sessions", VITRELL_PRESET_FOLDER});
  }
  Document& Edited() { return window_->Work().Edited(); }
  int At(const char* name) { return PositionOf(Edited().Panel(), name); }
  void OpenPicture() {
    window_->Open(picture_);
    ASSERT_TRUE(WaitUntil([this] { return window_->Work().Shown() != nullptr; }));
  }
  QAction* ActionOf(const QString& text) {
    for (QAction* action : window_->findChildren<QAction*>()) {
      if (action->text().remove('&').remove("\u2026").startsWith(text)) return action;
    }
    return nullptr;
  }
  QAction* ActionWith(const QKeySequence& key) {
    for (QAction* action : window_->findChildren<QAction*>()) {
      if (action->shortcuts().contains(key)) return action;
    }
    return nullptr;
  }
  void Answer(const char* choice) {
    for (QPushButton* button : window_->Messages().findChildren<QPushButton*>()) {
      if (button->text() == choice) return button->click();
    }
    FAIL() << "no such choice: " << choice;
  }
  // Runs as soon as such a dialog is open.
  template <typename Dialog>
  void InDialog(const std::function<void(Dialog&)>& act) {
    auto* const timer = new QTimer(window_.get());
    QObject::connect(timer, &QTimer::timeout, timer, [timer, act] {
      auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      timer->stop();
      timer->deleteLater();
      act(*dialog);
    });
    timer->start(10);
  }
  static void Choose(QFileDialog& dialog, const fs::path& file) {
    dialog.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(file.string()));
    static_cast<QDialog&>(dialog).accept();
  }
  std::string Message() { return window_->Messages().Text().toStdString(); }

  fs::path folder_ = fs::temp_directory_path() / ("vitrell-window-" + std::to_string(::getpid()));
  fs::path picture_ = folder_ / "street.png";
  std::shared_ptr<const headless::EffectModule> module_ =
      std::make_shared<const headless::EffectModule>(fs::path(VITRELL_MODULE_PATH));
  std::unique_ptr<MainWindow> window_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_TESTS_PANEL_WINDOW_FIXTURE_H_
