// The lens as the panel draws it, held against the mask that the effect makes.
#include "panel/view/lens_geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "headless/effect_host.h"
#include "look/value_text.h"
#include "panel/effect_panel.h"

namespace vitrell::panel {
namespace {

constexpr int kWidth = 320;
constexpr int kHeight = 240;
constexpr QSize kLensPicture(90, 70);

// White inside the lens, on black.
class LensGeometryTest : public testing::Test {
 protected:
  void Render(const std::vector<std::string>& assignments) {
    look::Settings settings(EffectPanel());
    for (const char* const assignment : {"color.opacity=100", "fast-blur.visible=off"}) {
      settings.Set(assignment);
    }
    for (const std::string& assignment : assignments) settings.Set(assignment);
    settings.Apply(host_, kWidth, kHeight);
    headless::WorldBuffer input(kWidth, kHeight, false);
    for (int y = 0; y < kHeight; ++y) {
      for (int x = 0; x < kWidth; ++x) input.At8(x, y) = {255, 0, 0, 0};
    }
    headless::WorldBuffer lensPicture(kLensPicture.width(), kLensPicture.height(), false);
    lensPicture.FillBytes(255);
    ASSERT_TRUE(host_.Render(input, output_, &lensPicture).Ok());
    geometry_ = LensGeometry(SetupOf(settings));
  }

  static LensSetup SetupOf(const look::Settings& settings) {
    const auto number = [&](const char* name) {
      return std::get<double>(settings.ValueOf(*EffectPanel().Find(name)));
    };
    const auto choice = [&](const char* name) {
      return std::get<look::ChoiceValue>(settings.ValueOf(*EffectPanel().Find(name))).number;
    };
    LensSetup setup;
    setup.type = choice("lens.type");
    setup.stretched = choice("lens.placement") == 2;
    setup.centre = {159.5, 119.5};  // of 50 %: the effect's pixel is one before
    setup.scaleWidth = number("lens.scale-width") * number("lens.scale") / 10000;
    setup.scaleHeight = number("lens.scale-height") * number("lens.scale") / 10000;
    setup.degrees = number("lens.rotation");
    setup.feather = number("lens.feather") / 100;
    setup.picture = {kWidth, kHeight};
    setup.lensPicture = kLensPicture;
    return setup;
  }

  // The mask at a continuous place, between the middles of pixels.
  double MaskAt(const QPointF& place) const {
    const double x = place.x() - 0.5, y = place.y() - 0.5;
    const int left = static_cast<int>(std::floor(x)), top = static_cast<int>(std::floor(y));
    double sum = 0;
    for (const int row : {0, 1}) {
      for (const int column : {0, 1}) {
        const double weight =
            (column == 1 ? x - left : 1 - x + left) * (row == 1 ? y - top : 1 - y + top);
        sum += weight * output_.At8(left + column, top + row).red;
      }
    }
    return sum / 255;
  }
  double MaskAtAnchor(const QPointF& anchor) const {
    return MaskAt(geometry_.ToPicture().map(anchor));
  }

  headless::EffectHost host_{std::filesystem::path(VITRELL_MODULE_PATH)};
  headless::WorldBuffer output_{kWidth, kHeight, false};
  LensGeometry geometry_{LensSetup()};
};

// 8-bit steps and pixels beside a sloping edge.
constexpr double kNear = 0.03;

TEST_F(LensGeometryTest, OutlinesOfCirclesAndRectanglesAreHalfWayThroughTheFeather) {
  for (const char* const type : {"Circle", "Rectangle --", "Rectangle l"}) {
    for (const char* const feather : {"50", "150"}) {
      SCOPED_TRACE(std::string(type) + " " + feather);
      Render({std::string("lens.type=") + type, std::string("lens.feather=") + feather,
              "lens.scale=40", "lens.scale-width=70", "lens.rotation=25"});
      EXPECT_NEAR(MaskAtAnchor(geometry_.WidthAnchor()), 0.5, kNear);
      EXPECT_NEAR(MaskAtAnchor(geometry_.HeightAnchor()), 0.5, kNear);
    }
  }
}

TEST_F(LensGeometryTest, TheTrianglesFeatherBeginsAtItsOutline) {
  Render({"lens.type=Triangle", "lens.feather=50", "lens.scale=60", "lens.scale-height=70",
          "lens.rotation=-40"});
  EXPECT_GT(MaskAtAnchor(geometry_.ScaleAnchor()), 1 - kNear);
  EXPECT_LT(MaskAtAnchor(geometry_.ScaleAnchor() * 1.4), 0.9);
  EXPECT_GT(MaskAtAnchor(geometry_.HeightAnchor() * 0.97), 1 - kNear);
  EXPECT_LT(MaskAtAnchor(geometry_.HeightAnchor() * 1.2), 0.9);
  EXPECT_GT(MaskAtAnchor(geometry_.WidthAnchor() * 0.97), 1 - kNear);
  EXPECT_LT(MaskAtAnchor(geometry_.WidthAnchor() * 1.2), 0.9);
}

TEST_F(LensGeometryTest, TheLensEndsAtTheLimitOfItsFeather) {
  for (const char* const type : {"Circle", "Rectangle --", "Rectangle l", "Triangle"}) {
    for (const char* const feather : {"0", "40", "190", "250"}) {
      SCOPED_TRACE(std::string(type) + " " + feather);
      Render({std::string("lens.type=") + type, std::string("lens.feather=") + feather,
              "lens.scale=24", "lens.rotation=160"});
      const QPainterPath limit = geometry_.FeatherLimit();
      const QPointF centre = geometry_.ToPicture().map(QPointF(0, 0));
      int lit = 0;
      for (double share = 0; share < 1; share += 1.0 / 64) {
        const QPointF way = limit.pointAtPercent(share) - centre;
        const double length = std::hypot(way.x(), way.y());
        const auto beyond = [&](double pixels) { return centre + way * (1 + pixels / length); };
        EXPECT_LT(MaskAt(beyond(2)), 0.005) << share;
        // The soft edge rises with the square of the distance.
        if (MaskAt(beyond(-0.3 * length)) > 0.02) ++lit;
      }
      EXPECT_GT(lit, 56);
    }
  }
}

TEST_F(LensGeometryTest, ACustomLensRotatesBeforeItIsScaled) {
  for (const char* const placement : {"Center Map", "Stretch Map to Fit"}) {
    SCOPED_TRACE(placement);
    Render({"lens.type=Custom", std::string("lens.placement=") + placement, "lens.scale=50",
            "lens.scale-width=60", "lens.rotation=30"});
    const QPainterPath outline = geometry_.Outline();
    const QPointF centre = outline.boundingRect().center();
    for (double share = 0; share < 1; share += 1.0 / 64) {
      const QPointF way = outline.pointAtPercent(share) - centre;
      const double length = std::hypot(way.x(), way.y());
      EXPECT_LT(MaskAt(centre + way * (1 + 3 / length)), 0.1) << share;
      EXPECT_GT(MaskAt(centre + way * (1 - 6 / length)), 0.9) << share;
    }
  }
}

TEST_F(LensGeometryTest, FeatherAtReversesItsAnchor) {
  for (const char* const type : {"Circle", "Rectangle --", "Rectangle l", "Triangle"}) {
    for (const double feather : {0.0, 0.3, 1.99, 2.01, 6.0}) {
      LensSetup setup = SetupOf(look::Settings(EffectPanel()));
      setup.type =
          std::get<look::ChoiceValue>(look::ParseValue(*EffectPanel().Find("lens.type"), type))
              .number;
      setup.feather = feather;
      const LensGeometry geometry(setup);
      EXPECT_NEAR(geometry.FeatherAt(geometry.FeatherAnchor()), feather, 1e-9) << type;
    }
  }
}

TEST_F(LensGeometryTest, WithoutATypeOrASizeThereIsNoShape) {
  LensSetup setup = SetupOf(look::Settings(EffectPanel()));
  EXPECT_TRUE(LensGeometry(setup).HasShape());
  setup.scaleHeight = 0;
  EXPECT_FALSE(LensGeometry(setup).HasShape());
  setup = SetupOf(look::Settings(EffectPanel()));
  setup.type = kLensNone;
  EXPECT_FALSE(LensGeometry(setup).HasShape());
  setup.type = kLensCustom;
  EXPECT_TRUE(LensGeometry(setup).HasShape());
  setup.lensPicture = {};
  EXPECT_FALSE(LensGeometry(setup).HasShape());
}

}  // namespace
}  // namespace vitrell::panel
