// Files that go in and out through the window's dialogs, and what a lost session left.
#include <gtest/gtest.h>

#include <QColorDialog>
#include <QSignalSpy>
#include <QToolButton>
#include <fstream>

#include "panel/widgets/control_row.h"
#include "panel/widgets/value_editor.h"
#include "panel/window_fixture.h"

namespace vitrell::panel {
namespace {

class WindowFilesTest : public WindowTest {
 protected:
  // The preset's lengths in pixels belong to a picture of half the width.
  fs::path WritePreset() const {
    const fs::path file = folder_ / "look.json";
    std::ofstream(file) << R"({"picture-width": 48, "lens.position": [12, 9]})";
    return file;
  }
  look::Value Position() { return Edited().ValueOf(At("lens.position")); }
  static look::Value Pixels(double x, double y) { return look::PointValue{{x, false}, {y, false}}; }
  void LoseSession(const fs::path& source) const {
    Document lost(module_);
    lost.SetPictureSize(48, 27);
    lost.SetValue(PositionOf(lost.Panel(), "lens.position"), Pixels(12, 9), EditPhase::kDone);
    lost.WriteCopy(folder_ / "sessions" / "lost.json");
    std::ofstream(folder_ / "sessions" / "lost.source") << source.string();
  }
  template <typename Widget>
  Widget* In(const char* control) {
    window_->Work().Controls().Choose(At(control));
    return window_->Work()
        .Controls()
        .findChild<ControlRow*>(control)
        ->Editor()
        ->findChild<Widget*>();
  }
};

TEST_F(WindowFilesTest, APresetLoadedBeforeThePictureIsScaledToItOnceItIsOpen) {
  window_->LoadPreset(WritePreset());
  EXPECT_EQ(Position(), Pixels(12, 9));
  OpenPicture();
  EXPECT_EQ(Position(), Pixels(24, 18));
  EXPECT_FALSE(Edited().IsChanged());
}

TEST_F(WindowFilesTest, WhatALostSessionHeldIsOffered) {
  LoseSession({});
  window_->OfferLostSession();
  EXPECT_NE(Message().find("last session"), std::string::npos) << Message();
  Answer("&Restore");
  EXPECT_EQ(Position(), Pixels(12, 9));
  EXPECT_TRUE(Edited().IsChanged());
  EXPECT_FALSE(fs::exists(folder_ / "sessions" / "lost.json"));
}

// Not to the width of the picture that happens to be open.
TEST_F(WindowFilesTest, LostLengthsBelongToTheLostPicture) {
  const fs::path small = folder_ / "small.png";
  media::WritePictureFile(small, media::NoisePicture(48, 27, 3, OIIO::TypeDesc::UINT8, 6));
  LoseSession(small);
  OpenPicture();
  window_->OfferLostSession();
  Answer("&Restore");
  ASSERT_TRUE(WaitUntil([&] { return window_->Work().Shown()->Name() == small; }));
  EXPECT_EQ(Position(), Pixels(12, 9));
}

TEST_F(WindowFilesTest, LostSettingsComeBackWithoutTheirPicture) {
  LoseSession(folder_ / "gone.png");
  window_->OfferLostSession();
  Answer("&Restore");
  ASSERT_TRUE(WaitUntil([&] { return Edited().IsChanged(); }));
  EXPECT_EQ(Position(), Pixels(12, 9));
  EXPECT_NE(Message().find("gone.png"), std::string::npos) << Message();
}

// Another message must not take the question away.
TEST_F(WindowFilesTest, ALostSessionIsOfferedUntilItIsAnswered) {
  LoseSession({});
  window_->OfferLostSession();
  std::ofstream(folder_ / "broken.png") << "no picture";
  window_->Open(folder_ / "broken.png");
  ASSERT_TRUE(WaitUntil([this] { return Message().find("broken.png") != std::string::npos; }));
  EXPECT_NE(Message().find("last session"), std::string::npos) << Message();
  Answer("&Restore");
  EXPECT_EQ(Position(), Pixels(12, 9));
  EXPECT_EQ(Message(), "");
  window_->Messages().ShowNote("Another one.");
  EXPECT_EQ(Message(), "Another one.");
}

TEST_F(WindowFilesTest, ADiscardedSessionIsGone) {
  LoseSession({});
  window_->OfferLostSession();
  Answer("&Discard");
  EXPECT_FALSE(Edited().IsChanged());
  EXPECT_FALSE(Recovery::FindLost(folder_ / "sessions"));
}

TEST_F(WindowFilesTest, AColourIsChosenInADialogAsOneStep) {
  const look::Value before = Edited().ValueOf(At("color.color"));
  const auto choose = [this](bool accepts) {
    In<QToolButton>("color.color")->click();
    auto* const dialog = window_->findChild<QColorDialog*>();
    ASSERT_NE(dialog, nullptr);
    dialog->setCurrentColor(QColor(10, 20, 30));
    EXPECT_EQ(Edited().ValueOf(At("color.color")), look::Value(look::ColourValue{10, 20, 30}));
    dialog->setCurrentColor(QColor(40, 50, 60));
    accepts ? dialog->accept() : dialog->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  };
  choose(false);
  EXPECT_EQ(Edited().ValueOf(At("color.color")), before);
  EXPECT_EQ(Edited().Undo().count(), 0);
  choose(true);
  EXPECT_EQ(Edited().ValueOf(At("color.color")), look::Value(look::ColourValue{40, 50, 60}));
  EXPECT_EQ(Edited().Undo().count(), 1);
}

TEST_F(WindowFilesTest, ALayerIsChosenInADialog) {
  Edited().SetValue(At("lens.type"), look::ChoiceValue{6}, EditPhase::kDone);
  In<QToolButton>("lens.custom-layer")->click();
  auto* const dialog = window_->findChild<QFileDialog*>();
  ASSERT_NE(dialog, nullptr);
  Choose(*dialog, picture_);
  EXPECT_EQ(Edited().ValueOf(At("lens.custom-layer")),
            look::Value(look::LayerValue{picture_.string()}));
}

}  // namespace
}  // namespace vitrell::panel
