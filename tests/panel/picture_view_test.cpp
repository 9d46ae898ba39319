// The picture view: what it shows, and what mouse and keys do in it.
#include "panel/view/picture_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>
#include <string>
#include <vector>

#include "look/value_text.h"
#include "panel/effect_panel.h"
#include "panel/hand.h"
#include "panel/view/handles.h"

namespace vitrell::panel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A picture of 200 x 100 in a view of 400 x 400: twice as large, from (0, 100) to (400, 300).
class PictureViewTest : public testing::Test {
 protected:
  PictureViewTest() {
    view_.setFixedSize(400, 400);
    view_.ShowBefore(Filled(Qt::blue));
    view_.ShowResult(Filled(Qt::green), true, 1);
    ShowActive(view_);
    view_.setFocus();
  }

  static QImage Filled(const QColor& colour, QSize size = {200, 100}) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(colour);
    return image;
  }
  QColor At(int x, int y) { return view_.grab().toImage().pixelColor(x, y); }
  std::vector<std::string> Labels() {
    std::vector<std::string> texts;
    for (const QLabel* label : view_.findChildren<QLabel*>()) {
      if (label->isVisible()) texts.push_back(label->text().toStdString());
    }
    return texts;
  }

  PictureView view_;
};

TEST_F(PictureViewTest, ThePictureIsFitted) {
  EXPECT_EQ(At(200, 200), QColor(Qt::green));
  EXPECT_EQ(At(3, 103), QColor(Qt::green));
  EXPECT_EQ(At(396, 296), QColor(Qt::green));
  EXPECT_NE(At(200, 97), QColor(Qt::green));
  EXPECT_NE(At(200, 303), QColor(Qt::green));
}

TEST_F(PictureViewTest, TheWheelZoomsOnThePointer) {
  const QPointF pointer(300, 150);
  const QPointF under = view_.Transform().ToPicture(pointer);
  TurnWheel(&view_, pointer, 3);
  EXPECT_GT(view_.Transform().Zoom(), 3.5);
  EXPECT_NEAR(view_.Transform().ToPicture(pointer).x(), under.x(), 1e-9);
  EXPECT_NEAR(view_.Transform().ToPicture(pointer).y(), under.y(), 1e-9);
  TurnWheel(&view_, pointer, -3);
  EXPECT_NEAR(view_.Transform().Zoom(), 2, 1e-9);
}

TEST_F(PictureViewTest, KeysFitAndShowTheActualSize) {
  QTest::keyClick(&view_, Qt::Key_1);
  EXPECT_EQ(view_.Transform().Zoom(), 1);
  QTest::keyClick(&view_, Qt::Key_Plus);
  EXPECT_EQ(view_.Transform().Zoom(), 1.25);
  QTest::keyClick(&view_, Qt::Key_Minus);
  EXPECT_EQ(view_.Transform().Zoom(), 1);
  QTest::keyClick(&view_, Qt::Key_F);
  EXPECT_EQ(view_.Transform().Zoom(), 2);
}

TEST_F(PictureViewTest, TheMiddleButtonAndSpacePan) {
  Drag(&view_, {{200, 200}, {210, 190}}, Qt::MiddleButton);
  EXPECT_EQ(view_.Transform().PictureRect().topLeft(), QPointF(10, 90));
  Drag(&view_, {{200, 200}, {230, 220}});
  EXPECT_EQ(view_.Transform().PictureRect().topLeft(), QPointF(10, 90));
  QTest::keyPress(&view_, Qt::Key_Space);
  Drag(&view_, {{200, 200}, {230, 220}});
  QTest::keyRelease(&view_, Qt::Key_Space);
  EXPECT_EQ(view_.Transform().PictureRect().topLeft(), QPointF(40, 110));
}

TEST_F(PictureViewTest, TheHeldKeyShowsThePictureBefore) {
  QTest::keyPress(&view_, Qt::Key_B);
  EXPECT_EQ(At(200, 200), QColor(Qt::blue));
  EXPECT_THAT(Labels(), ElementsAre(HasSubstr("before")));
  QTest::keyRelease(&view_, Qt::Key_B);
  EXPECT_EQ(At(200, 200), QColor(Qt::green));
}

TEST_F(PictureViewTest, TheDividerIsDragged) {
  QTest::keyClick(&view_, Qt::Key_D);
  EXPECT_EQ(At(180, 120), QColor(Qt::blue));
  EXPECT_EQ(At(220, 120), QColor(Qt::green));
  Drag(&view_, {{202, 250}, {302, 250}});
  EXPECT_EQ(At(280, 120), QColor(Qt::blue));
  EXPECT_EQ(At(320, 120), QColor(Qt::green));
  QTest::keyClick(&view_, Qt::Key_D);
  EXPECT_EQ(At(180, 120), QColor(Qt::green));
}

TEST_F(PictureViewTest, TheMaskLiesOverWhatIsOutsideTheLens) {
  std::vector<bool> wanted;
  QObject::connect(&view_, &PictureView::MaskWanted, [&](bool on) { wanted.push_back(on); });
  QImage mask = Filled(Qt::black, {100, 50});
  for (int y = 0; y < 50; ++y) {
    for (int x = 50; x < 100; ++x) mask.setPixelColor(x, y, Qt::white);
  }
  view_.ShowMask(mask);
  EXPECT_EQ(At(100, 200), QColor(Qt::green));
  QTest::keyClick(&view_, Qt::Key_M);
  EXPECT_NEAR(At(100, 200).red(), 128, 2);
  EXPECT_NEAR(At(100, 200).green(), 127, 2);
  EXPECT_EQ(At(300, 200), QColor(Qt::green));
  QTest::keyClick(&view_, Qt::Key_M);
  EXPECT_EQ(wanted, (std::vector<bool>{true, false}));
}

TEST_F(PictureViewTest, ACheckerboardShowsThroughTransparentPixels) {
  view_.ShowResult(Filled(Qt::transparent), true, 1);
  EXPECT_NE(At(2, 102), At(10, 102));
  EXPECT_EQ(At(2, 102), At(10, 110));
}

TEST_F(PictureViewTest, TheSignSaysWhatIsShown) {
  EXPECT_THAT(Labels(), ElementsAre("exact · 200 %"));
  view_.ShowResult(Filled(Qt::green, {50, 25}), false, 0.25);
  EXPECT_THAT(Labels(), ElementsAre("preview in 25 % of the size · 200 %"));
  EXPECT_EQ(At(396, 296), QColor(Qt::green));
}

TEST_F(PictureViewTest, AnErrorStandsOverThePictureUntilTheNextOne) {
  view_.ShowError("Error 516: bad callback parameter");
  EXPECT_THAT(Labels(), testing::Contains(HasSubstr("516")));
  EXPECT_EQ(At(3, 103), QColor(Qt::green));
  view_.ShowResult(Filled(Qt::green), true, 1);
  EXPECT_THAT(Labels(), ElementsAre("exact · 200 %"));
}

TEST_F(PictureViewTest, ThePixelUnderThePointerIsAskedFor) {
  view_.SetProbe([](int x, int y) { return QStringLiteral("%1 and %2").arg(x).arg(y); });
  MoveMouse(&view_, {399, 299}, Qt::NoButton);
  EXPECT_THAT(Labels(), testing::Contains("199 and 99"));
  MoveMouse(&view_, {0, 100}, Qt::NoButton);
  EXPECT_THAT(Labels(), testing::Contains("0 and 0"));
  MoveMouse(&view_, {200, 350}, Qt::NoButton);
  EXPECT_THAT(Labels(), ElementsAre("exact · 200 %"));
}

TEST_F(PictureViewTest, TheHandlesMayEndFirst) {
  {
    Handles handles(EffectPanel());
    view_.SetHandles(&handles);
    EXPECT_NE(At(199, 199), QColor(Qt::green));
  }
  EXPECT_EQ(At(199, 199), QColor(Qt::green));
}

class PictureViewHandlesTest : public PictureViewTest {
 protected:
  PictureViewHandlesTest() {
    view_.SetHandles(&handles_);
    QObject::connect(&handles_, &Handles::Edited,
                     [this](int control, const look::Value& value, EditPhase phase) {
                       const look::Control& edited =
                           EffectPanel().controls[static_cast<std::size_t>(control)];
                       edits_.push_back(edited.name + "=" + look::FormatValue(edited, value) +
                                        (phase == EditPhase::kDragging ? "..." : ""));
                     });
  }
  ~PictureViewHandlesTest() override { view_.SetHandles(nullptr); }

  Handles handles_{EffectPanel()};
  std::vector<std::string> edits_;
};

TEST_F(PictureViewHandlesTest, HandlesAreDragged) {
  // The centre: pixels 99 and 49, their middles at (199, 199) of the view.
  Drag(&view_, {{199, 199}, {219, 239}});
  EXPECT_THAT(edits_, ElementsAre("lens.position=55%,70%...", "lens.position=55%,70%"));
}

TEST_F(PictureViewHandlesTest, TheKeyHidesThem) {
  const QImage with = view_.grab().toImage();
  QTest::keyClick(&view_, Qt::Key_H);
  EXPECT_NE(view_.grab().toImage(), with);
  EXPECT_EQ(At(199, 199), QColor(Qt::green));
  Drag(&view_, {{199, 199}, {219, 239}});
  EXPECT_THAT(edits_, testing::IsEmpty());
  QTest::keyClick(&view_, Qt::Key_H);
  EXPECT_EQ(view_.grab().toImage(), with);
}

TEST_F(PictureViewHandlesTest, EscapeEndsADrag) {
  PressMouse(&view_, {199, 199});
  MoveMouse(&view_, {219, 239});
  QTest::keyClick(&view_, Qt::Key_Escape);
  MoveMouse(&view_, {300, 239});
  ReleaseMouse(&view_, {300, 239});
  EXPECT_THAT(edits_, ElementsAre("lens.position=55%,70%...", "lens.position=50%,50%"));
}

TEST_F(PictureViewHandlesTest, AClickPicksAPoint) {
  view_.PickPoint(ControlOf("trail.center"));
  Drag(&view_, {{20, 140}});
  // Pixel 10 and 20.
  EXPECT_THAT(edits_, ElementsAre("trail.center=5.1%,21%"));
  view_.PickPoint(ControlOf("trail.center"));
  QTest::keyClick(&view_, Qt::Key_Escape);
  Drag(&view_, {{20, 140}});
  EXPECT_EQ(edits_.size(), 1U);
}

}  // namespace
}  // namespace vitrell::panel
