// The whole window, without a display.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDockWidget>
#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <fstream>

#include "panel/window/desktop_colours.h"
#include "panel/window_fixture.h"

namespace vitrell::panel {
namespace {

TEST_F(WindowTest, OpensAPictureAndShowsItRendered) {
  QSignalSpy answered(&window_->Work(), &Workspace::Answered);
  OpenPicture();
  ASSERT_TRUE(WaitUntil(
      [&] { return !answered.isEmpty() && answered.last()[0].value<RenderAnswer>().exact; }));
  EXPECT_EQ(window_->Work().View().PictureSize(), QSize(96, 54));
  EXPECT_TRUE(window_->windowTitle().startsWith("street.png"));
  EXPECT_EQ(Message(), "");
}

TEST_F(WindowTest, AnUnreadableFileIsToldAndWhatWasOpenStays) {
  OpenPicture();
  Edited().SetValue(At("fast-blur.amount"), 33.0, EditPhase::kDone);
  std::ofstream(folder_ / "broken.png") << "no picture";
  window_->Open(folder_ / "broken.png");
  ASSERT_TRUE(WaitUntil([this] { return !Message().empty(); }));
  EXPECT_NE(Message().find("broken.png"), std::string::npos) << Message();
  EXPECT_EQ(window_->Work().Shown()->Name(), picture_);
  EXPECT_EQ(Edited().ValueOf(At("fast-blur.amount")), look::Value(33.0));
}

TEST_F(WindowTest, APresetWithAnUnknownNameIsToldAndChangesNothing) {
  Edited().SetValue(At("fast-blur.amount"), 33.0, EditPhase::kDone);
  std::ofstream(folder_ / "bad.json") << R"({"lens.fether": 1})";
  window_->LoadPreset(folder_ / "bad.json");
  EXPECT_NE(Message().find("lens.feather"), std::string::npos) << Message();
  EXPECT_EQ(Edited().ValueOf(At("fast-blur.amount")), look::Value(33.0));
}

TEST_F(WindowTest, DroppedFilesAreOpenedAndDroppedPresetsLoaded) {
  const auto drop = [this](const fs::path& file) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(file.string()))});
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window_.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window_.get(), &event);
  };
  drop(picture_);
  EXPECT_TRUE(WaitUntil([this] { return window_->Work().Shown() != nullptr; }));
  std::ofstream(folder_ / "look.json") << R"({"lens.feather": 7})";
  drop(folder_ / "look.json");
  EXPECT_EQ(Edited().ValueOf(At("lens.feather")), look::Value(7.0));
}

TEST_F(WindowTest, MenusUndoAndCopyTheCommand) {
  OpenPicture();
  Edited().SetValue(At("fast-blur.amount"), 33.0, EditPhase::kDone);
  ActionOf("Copy as Command Line")->trigger();
  const QString line = QApplication::clipboard()->text();
  EXPECT_TRUE(line.startsWith("vitrell render ")) << line.toStdString();
  EXPECT_TRUE(line.endsWith("street-vitrell.png --set fast-blur.amount=33")) << line.toStdString();
  ActionOf("Undo")->trigger();
  EXPECT_FALSE(Edited().DiffersFromDefault(At("fast-blur.amount")));
  ActionOf("Redo")->trigger();
  EXPECT_EQ(Edited().ValueOf(At("fast-blur.amount")), look::Value(33.0));
}

TEST_F(WindowTest, RecentFilesAndPlacesAreRemembered) {
  OpenPicture();
  window_->resize(777, 555);
  window_->findChild<QDockWidget*>("presets")->hide();
  window_->close();
  window_ = MakeWindow();
  EXPECT_EQ(window_->size(), QSize(777, 555));
  EXPECT_TRUE(window_->findChild<QDockWidget*>("presets")->isHidden());
  EXPECT_FALSE(window_->findChild<QDockWidget*>("controls")->isHidden());
  const QAction* recent = ActionOf("street.png");
  ASSERT_NE(recent, nullptr);
  EXPECT_EQ(recent->toolTip().toStdString(), picture_.string());
}

TEST_F(WindowTest, TheTimeMenuPlaysAndSteps) {
  for (const char* name : {"plate.1.png", "plate.2.png", "plate.3.png"}) {
    fs::copy_file(picture_, folder_ / name);
  }
  window_->Open(folder_ / "plate.#.png");
  ASSERT_TRUE(WaitUntil([this] { return window_->Work().Shown() != nullptr; }));
  ActionOf("One Frame On")->trigger();
  EXPECT_EQ(window_->Work().FrameNumber(), 2);
  ActionOf("One Frame Back")->trigger();
  EXPECT_EQ(window_->Work().FrameNumber(), 1);
  ActionOf("Play or Pause")->trigger();
  EXPECT_TRUE(window_->Work().Time().IsPlaying());
  EXPECT_TRUE(WaitUntil([this] { return window_->Work().FrameNumber() == 3; }));
  ActionOf("Play or Pause")->trigger();
  EXPECT_FALSE(window_->Work().Time().IsPlaying());
}

TEST_F(WindowTest, ClosingAsksForUnsavedPresets) {
  const auto closeWith = [this](QMessageBox::StandardButton button) {
    bool asked = false;
    QTimer::singleShot(0, window_.get(), [&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      asked = true;
      box->button(button)->click();
    });
    const bool closed = window_->close();
    EXPECT_TRUE(asked);
    return closed;
  };
  Edited().SetValue(At("fast-blur.amount"), 33.0, EditPhase::kDone);
  EXPECT_FALSE(closeWith(QMessageBox::Cancel));
  EXPECT_TRUE(window_->SavePreset(folder_ / "mine.json"));
  Edited().SetValue(At("fast-blur.amount"), 34.0, EditPhase::kDone);
  EXPECT_TRUE(closeWith(QMessageBox::Save));
  Document saved(module_);
  saved.LoadPreset(folder_ / "mine.json");
  EXPECT_EQ(saved.ValueOf(At("fast-blur.amount")), look::Value(34.0));
}

TEST_F(WindowTest, PresetsAreShownAsThumbnailsOfThePicture) {
  Thumbnails thumbnails(module_, Edited().Panel());
  std::vector<Thumbnail> made;
  QObject::connect(&thumbnails, &Thumbnails::Made,
                   [&](const Thumbnail& thumbnail) { made.push_back(thumbnail); });
  std::ofstream(folder_ / "bad.json") << "{";
  const fs::path good = folder_ / "good.json";
  std::ofstream(good) << R"({"lightness.amount": 100, "lens.type": "none"})";
  thumbnails.Make(FrameOfPicture(picture_, 0), {good, folder_ / "bad.json"});
  ASSERT_TRUE(WaitUntil([&] { return made.size() == 2; }));
  EXPECT_EQ(made[0].image.size(), QSize(96, 54));
  EXPECT_EQ(made[0].message, "");
  EXPECT_TRUE(made[1].image.isNull());
  EXPECT_TRUE(made[1].message.contains("bad.json"));
}

TEST(DesktopColoursTest, DarkAndLightAreTheDesktops) {
  const auto isDark = [] {
    const QPalette palette = QApplication::palette();
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::Text).lightness();
  };
  const bool before = isDark();
  DesktopColours colours;
  colours.Take(1);
  EXPECT_TRUE(isDark());
  colours.Take(2);
  EXPECT_EQ(isDark(), before);
}

}  // namespace
}  // namespace vitrell::panel
