// What a person expects of every program: keys, dialogs, recent files, places, closing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDockWidget>
#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QTest>
#include <fstream>

#include "panel/hand.h"
#include "panel/window_fixture.h"

namespace vitrell::panel {
namespace {

class WindowHabitsTest : public WindowTest {
 protected:
  WindowHabitsTest() { ShowActive(*window_); }

  // A real key, and a dialog for files that it opens.
  void PressAndChoose(Qt::Key key, Qt::KeyboardModifiers modifiers, const fs::path& file) {
    bool chosen = false;
    InDialog<QFileDialog>([&](QFileDialog& dialog) {
      chosen = true;
      Choose(dialog, file);
    });
    QTest::keyClick(window_.get(), key, modifiers);
    EXPECT_TRUE(chosen);
    ShowActive(*window_);
  }
  bool Shows(const fs::path& file) {
    return WaitUntil([&] {
      return window_->Work().Shown() != nullptr && window_->Work().Shown()->Name() == file;
    });
  }
  fs::path WriteFrames() const {
    for (const char* name : {"plate.1.png", "plate.2.png", "plate.3.png"}) {
      fs::copy_file(picture_, folder_ / name);
    }
    return folder_ / "plate.2.png";
  }
  void CloseAnswering(QMessageBox::StandardButton answer) {
    bool asked = false;
    InDialog<QMessageBox>([&](QMessageBox& box) {
      asked = true;
      box.button(answer)->click();
    });
    window_->close();
    EXPECT_TRUE(asked);
  }
};

TEST_F(WindowHabitsTest, APictureIsOpenedByKeyAndDialog) {
  PressAndChoose(Qt::Key_O, Qt::ControlModifier, picture_);
  EXPECT_TRUE(Shows(picture_));
}

TEST_F(WindowHabitsTest, AnyFrameOpensItsSequence) {
  PressAndChoose(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier, WriteFrames());
  ASSERT_TRUE(Shows(folder_ / "plate.#.png"));
  EXPECT_EQ(window_->Work().Shown()->FrameCount(), 3);
  EXPECT_TRUE(window_->findChild<QDockWidget*>("time")->isVisible());
}

TEST_F(WindowHabitsTest, ALonePictureIsNoSequenceAndIsOpenedAlone) {
  PressAndChoose(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier, picture_);
  EXPECT_NE(Message().find("no other frame"), std::string::npos) << Message();
  EXPECT_TRUE(Shows(picture_));
}

TEST_F(WindowHabitsTest, APresetIsLoadedByKeyAndDialogAndUndoneByKey) {
  std::ofstream(folder_ / "look.json") << R"({"lens.feather": 7})";
  Edited().SetValue(At("intensity"), 33.0, EditPhase::kDone);
  PressAndChoose(Qt::Key_L, Qt::ControlModifier, folder_ / "look.json");
  EXPECT_EQ(Edited().ValueOf(At("lens.feather")), look::Value(7.0));
  EXPECT_FALSE(Edited().DiffersFromDefault(At("intensity")));
  QTest::keyClick(window_.get(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Edited().ValueOf(At("intensity")), look::Value(33.0));
  QTest::keyClick(window_.get(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_FALSE(Edited().DiffersFromDefault(At("intensity")));
  QTest::keyClick(window_.get(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Edited().ValueOf(At("intensity")), look::Value(33.0));
}

TEST_F(WindowHabitsTest, ADialogThatIsLeftChangesNothing) {
  OpenPicture();
  for (const Qt::Key key : {Qt::Key_O, Qt::Key_L, Qt::Key_R}) {
    bool left = false;
    InDialog<QFileDialog>([&left](QFileDialog& dialog) {
      left = true;
      dialog.reject();
    });
    QTest::keyClick(window_.get(), key, Qt::ControlModifier);
    EXPECT_TRUE(left) << key;
    ShowActive(*window_);
  }
  EXPECT_EQ(window_->Work().Shown()->Name(), picture_);
  EXPECT_EQ(Edited().Undo().count(), 0);
  EXPECT_EQ(Message(), "");
}

TEST_F(WindowHabitsTest, ARecentFileIsOpenedAgainAndALostOneIsLeftOut) {
  const fs::path other = folder_ / "other.png";
  fs::copy_file(picture_, other);
  OpenPicture();
  window_->Open(other);
  ASSERT_TRUE(Shows(other));
  QAction* const recent = ActionOf("street.png");
  ASSERT_NE(recent, nullptr);
  recent->trigger();
  EXPECT_TRUE(Shows(picture_));
  fs::remove(other);
  Q_EMIT window_->findChild<RecentFiles*>()->aboutToShow();
  EXPECT_EQ(ActionOf("other.png"), nullptr);
  EXPECT_NE(ActionOf("street.png"), nullptr);
}

TEST_F(WindowHabitsTest, SplittersStandWhereTheyWereLeft) {
  const auto width = [this](const char* dock) {
    return window_->findChild<QDockWidget*>(dock)->width();
  };
  window_->resize(1200, 700);
  const int before = width("controls");
  window_->resizeDocks({window_->findChild<QDockWidget*>("controls")}, {before + 90},
                       Qt::Horizontal);
  QApplication::processEvents();
  const int controls = width("controls");
  const int presets = width("presets");
  ASSERT_NE(controls, before);
  window_->close();
  window_ = MakeWindow();
  ShowActive(*window_);
  EXPECT_EQ(width("controls"), controls);
  EXPECT_EQ(width("presets"), presets);
}

TEST_F(WindowHabitsTest, DiscardedChangesCloseAndLeaveNothingBehind) {
  Edited().SetValue(At("intensity"), 33.0, EditPhase::kDone);
  CloseAnswering(QMessageBox::Cancel);
  EXPECT_TRUE(window_->isVisible());
  EXPECT_EQ(Edited().ValueOf(At("intensity")), look::Value(33.0));
  CloseAnswering(QMessageBox::Discard);
  EXPECT_FALSE(window_->isVisible());
  window_.reset();
  EXPECT_FALSE(Recovery::FindLost(folder_ / "sessions"));
}

TEST_F(WindowHabitsTest, AFileFromElsewhereIsTold) {
  QMimeData data;
  data.setUrls({QUrl("https://example.com/street.png")});
  QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(window_.get(), &enter);
  QDropEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(window_.get(), &event);
  EXPECT_NE(Message().find("not on this machine"), std::string::npos) << Message();
}

TEST_F(WindowHabitsTest, WithoutAPictureThereIsNothingToRenderOrCopy) {
  QTest::keyClick(window_.get(), Qt::Key_R, Qt::ControlModifier);
  EXPECT_NE(Message().find("Open a picture first"), std::string::npos) << Message();
  window_->Messages().hide();
  QTest::keyClick(window_.get(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_NE(Message().find("Open a picture first"), std::string::npos) << Message();
}

}  // namespace
}  // namespace vitrell::panel
