// Handles: where they are, and what dragging them does.
#include "panel/view/handles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QLineF>
#include <cmath>
#include <random>
#include <set>
#include <string>

#include "look/settings.h"
#include "look/value_text.h"
#include "panel/effect_panel.h"

namespace vitrell::panel {
namespace {

using testing::ElementsAre;

constexpr QSize kPicture(800, 600);

class HandlesTest : public testing::Test {
 protected:
  HandlesTest() {
    handles_.SetPictureSize(kPicture);
    handles_.SetLensPictureSize({300, 200});
    QObject::connect(&handles_, &Handles::Edited,
                     [this](int control, const look::Value& value, EditPhase phase) {
                       const look::Control& edited =
                           EffectPanel().controls[static_cast<std::size_t>(control)];
                       settings_.SetValue(edited, value);
                       edits_.push_back(edited.name + "=" + look::FormatValue(edited, value) +
                                        (phase == EditPhase::kDragging ? "..." : ""));
                     });
  }

  void Set(const std::vector<std::string>& assignments) {
    for (const std::string& assignment : assignments) settings_.Set(assignment);
    handles_.ShowValues(settings_.Values(), greyed_);
    edits_.clear();
  }
  Handles::Handle Find(Handles::Kind kind) {
    for (const Handles::Handle& handle : handles_.Visible(toView_)) {
      if (handle.kind == kind) return handle;
    }
    ADD_FAILURE() << "no such handle";
    return {};
  }
  void DragBy(Handles::Kind kind, const QPointF& way,
              Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    // Off the handle's middle, which must not make it jump.
    const QPointF grip = Find(kind).position + QPointF(2, -1);
    ASSERT_TRUE(handles_.Press(grip, toView_));
    handles_.Move(grip + way, modifiers);
    handles_.Release();
  }
  // The direction that the handle moves in.
  QPointF AxisOf(Handles::Kind kind, const std::string& type) {
    const QPointF centre = Find(Handles::Kind::kPoint).position;
    if (kind == Handles::Kind::kWidth) {
      std::vector<QPointF> sides;
      for (const Handles::Handle& handle : handles_.Visible(toView_)) {
        if (handle.kind == kind) sides.push_back(handle.position);
      }
      return (sides.at(0) - sides.at(1)) / 2;
    }
    const bool upwards = kind == Handles::Kind::kFeather && type.starts_with("Rectangle");
    return Find(upwards ? Handles::Kind::kHeight : kind).position - centre;
  }
  double Number(const char* name) {
    return std::get<double>(settings_.ValueOf(*EffectPanel().Find(name)));
  }

  look::Settings settings_{EffectPanel()};
  std::vector<bool> greyed_ = std::vector<bool>(EffectPanel().controls.size(), false);
  Handles handles_{EffectPanel()};
  QTransform toView_ = QTransform::fromTranslate(30, 20).scale(0.5, 0.5);
  std::vector<std::string> edits_;
};

TEST_F(HandlesTest, ThePointIsTheMiddleOfTheEffectsPixel) {
  Set({"lens.type=None", "lens.position=100,50%"});
  EXPECT_EQ(Find(Handles::Kind::kPoint).position, toView_.map(QPointF(99.5, 299.5)));
}

TEST_F(HandlesTest, DraggingTheCentreMovesByWholePixelsAndKeepsUnits) {
  Set({"lens.type=None", "lens.position=101,50%"});
  DragBy(Handles::Kind::kPoint, {20, 10});
  // 40 and 20 pixels: from pixel 100 to 140, from 299 to 319.
  EXPECT_THAT(edits_, ElementsAre("lens.position=141,53.2%...", "lens.position=141,53.2%"));
  EXPECT_EQ(Find(Handles::Kind::kPoint).position, toView_.map(QPointF(140.5, 319.5)));
}

TEST_F(HandlesTest, ShiftMovesAlongOneAxis) {
  Set({"lens.type=None", "lens.position=101,101"});
  DragBy(Handles::Kind::kPoint, {20, 10}, Qt::ShiftModifier);
  EXPECT_EQ(edits_.back(), "lens.position=141,101");
}

TEST_F(HandlesTest, SidesOfTheCircleScaleIt) {
  // The radius is 0.35 * 800 = 280 picture pixels, 140 in the view.
  Set({"lens.position=400,300"});
  DragBy(Handles::Kind::kWidth, {-70, 33});
  EXPECT_EQ(Number("lens.scale-width"), 50);
  DragBy(Handles::Kind::kHeight, {9, -35});
  EXPECT_EQ(Number("lens.scale-height"), 125);
  EXPECT_EQ(Number("lens.scale"), 100);
}

TEST_F(HandlesTest, TheCornerScalesTheWhole) {
  Set({"lens.scale=50", "lens.type=Rectangle --"});
  const QPointF centre = Find(Handles::Kind::kPoint).position;
  DragBy(Handles::Kind::kScale, (Find(Handles::Kind::kScale).position - centre) * 0.5);
  EXPECT_EQ(Number("lens.scale"), 75);
  EXPECT_EQ(Number("lens.scale-width"), 100);
}

TEST_F(HandlesTest, RotationCountsWholeTurns) {
  Set({"lens.scale=50"});
  const QPointF centre = Find(Handles::Kind::kPoint).position;
  const QPointF up = Find(Handles::Kind::kRotation).position;
  ASSERT_TRUE(handles_.Press(up, toView_));
  const double radius = QLineF(centre, up).length();
  for (int degrees = 0; degrees <= 400; degrees += 50) {
    const double angle = degrees * std::numbers::pi / 180;
    handles_.Move(centre + radius * QPointF(std::sin(angle), -std::cos(angle)), Qt::NoModifier);
  }
  handles_.Release();
  EXPECT_EQ(edits_.back(), "lens.rotation=400");
}

TEST_F(HandlesTest, ShiftRotatesInSteps) {
  Set({"lens.rotation=7"});
  DragBy(Handles::Kind::kRotation, {60, 0}, Qt::ShiftModifier);
  EXPECT_EQ(std::fmod(Number("lens.rotation"), 15), 0);
  EXPECT_GT(Number("lens.rotation"), 0);
}

TEST_F(HandlesTest, TheFeatherStopsAtNone) {
  Set({"lens.feather=50"});
  const QPointF centre = Find(Handles::Kind::kPoint).position;
  DragBy(Handles::Kind::kFeather, (centre - Find(Handles::Kind::kFeather).position) * 0.9);
  EXPECT_EQ(Number("lens.feather"), 0);
}

// Wherever a handle is dragged to, it is there afterwards.
TEST_F(HandlesTest, HandlesFollowTheHandForEveryShape) {
  std::mt19937 random(7);
  const auto between = [&](double from, double to) {
    return std::uniform_real_distribution<double>(from, to)(random);
  };
  for (const char* const type : {"Circle", "Rectangle --", "Rectangle l", "Triangle", "Custom"}) {
    for (int round = 0; round < 20; ++round) {
      Set({std::string("lens.type=") + type, "lens.feather=120",
           "lens.scale=" + std::to_string(between(40, 90)),
           "lens.scale-width=" + std::to_string(between(60, 150)),
           "lens.scale-height=" + std::to_string(between(60, 150)),
           "lens.rotation=" + std::to_string(between(-200, 200))});
      for (const Handles::Kind kind : {Handles::Kind::kWidth, Handles::Kind::kHeight,
                                       Handles::Kind::kScale, Handles::Kind::kFeather}) {
        if (kind == Handles::Kind::kFeather && std::string(type) == "Custom") continue;
        const QPointF way = AxisOf(kind, type) * between(0.05, 0.2);
        const QPointF wanted = Find(kind).position + way;
        DragBy(kind, way);
        // The numbers have steps of a tenth.
        EXPECT_LT(QLineF(Find(kind).position, wanted).length(), 1)
            << type << " handle " << static_cast<int>(kind) << " round " << round;
      }
    }
  }
}

TEST_F(HandlesTest, CancelBringsTheValueBack) {
  Set({"lens.scale-width=80"});
  const QPointF at = Find(Handles::Kind::kWidth).position;
  ASSERT_TRUE(handles_.Press(at, toView_));
  handles_.Move(at + QPointF(30, 0), Qt::NoModifier);
  handles_.Cancel();
  EXPECT_EQ(edits_.back(), "lens.scale-width=80");
  EXPECT_FALSE(handles_.IsDragging());
}

TEST_F(HandlesTest, AClickWithoutAMoveChangesNothing) {
  Set({});
  ASSERT_TRUE(handles_.Press(Find(Handles::Kind::kWidth).position, toView_));
  handles_.Release();
  EXPECT_THAT(edits_, testing::IsEmpty());
  EXPECT_FALSE(handles_.Press({5000, 5000}, toView_));
}

TEST_F(HandlesTest, GreyedControlsHaveNoHandle) {
  greyed_[static_cast<std::size_t>(ControlOf("trail.center"))] = true;
  greyed_[static_cast<std::size_t>(ControlOf("lens.rotation"))] = true;
  greyed_[static_cast<std::size_t>(ControlOf("lens.feather"))] = true;
  Set({});
  std::multiset<int> controls;
  for (const Handles::Handle& handle : handles_.Visible(toView_)) controls.insert(handle.control);
  const std::multiset<int> expected = {
      ControlOf("lens.scale-width"),  ControlOf("lens.scale-width"),
      ControlOf("lens.scale-height"), ControlOf("lens.scale"),
      ControlOf("lens.position"),     ControlOf("optical-distortion.center")};
  EXPECT_EQ(controls, expected);
}

TEST_F(HandlesTest, PickedPointsAreTheEffectsPixel) {
  Set({"trail.center=0,0"});
  handles_.PlacePoint(ControlOf("trail.center"), {400.9, 20.1}, EditPhase::kDone);
  // 401 times 65536 / 65566 is 400.8, 21 times that 20.99.
  EXPECT_THAT(edits_, ElementsAre("trail.center=401,21"));
}

TEST_F(HandlesTest, TheOutlineIsDrawnWhereTheLensIs) {
  Set({"lens.feather=0"});
  QImage image(460, 340, QImage::Format_RGB32);
  image.fill(Qt::green);
  QPainter painter(&image);
  handles_.Paint(painter, toView_);
  painter.end();
  // The circle's left end: 280 pixels left of 399.5, at half the size; no handle on its way.
  const double angle = 200 * std::numbers::pi / 180;
  const QPointF edge =
      toView_.map(QPointF(399.5, 299.5) + 280 * QPointF(std::cos(angle), std::sin(angle)));
  EXPECT_NE(image.pixel(edge.toPoint()), QColor(Qt::green).rgb());
  EXPECT_EQ(image.pixel(edge.toPoint() + QPoint(12, 0)), QColor(Qt::green).rgb());
}

}  // namespace
}  // namespace vitrell::panel
