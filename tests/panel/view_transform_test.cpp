// Where the picture lies in the view.
#include "panel/view/view_transform.h"

#include <gtest/gtest.h>

namespace vitrell::panel {
namespace {

class ViewTransformTest : public testing::Test {
 protected:
  ViewTransformTest() {
    transform_.SetView({400, 300});
    transform_.SetPicture({800, 400});
  }

  ViewTransform transform_;
};

void ExpectNear(const QPointF& a, const QPointF& b) {
  EXPECT_NEAR(a.x(), b.x(), 1e-9);
  EXPECT_NEAR(a.y(), b.y(), 1e-9);
}

TEST_F(ViewTransformTest, FitsThePictureInTheMiddle) {
  EXPECT_EQ(transform_.PictureRect(), QRectF(0, 50, 400, 200));
  transform_.SetView({100, 300});
  EXPECT_EQ(transform_.PictureRect(), QRectF(0, 125, 100, 50));
}

TEST_F(ViewTransformTest, ZoomsOnTheGivenPoint) {
  const QPointF pointer(300, 120);
  const QPointF under = transform_.ToPicture(pointer);
  for (const double zoom : {0.75, 3.0, 64.0, 0.02}) {
    transform_.ZoomTo(zoom, pointer);
    EXPECT_EQ(transform_.Zoom(), zoom);
    ExpectNear(transform_.ToPicture(pointer), under);
  }
}

TEST_F(ViewTransformTest, ZoomHasLimits) {
  transform_.ZoomTo(1000, {0, 0});
  EXPECT_EQ(transform_.Zoom(), ViewTransform::kMostZoom);
  transform_.ZoomTo(0, {0, 0});
  EXPECT_EQ(transform_.Zoom(), ViewTransform::kLeastZoom);
}

TEST_F(ViewTransformTest, AZoomedPictureKeepsTheMiddleInAnotherView) {
  transform_.ZoomTo(2, {200, 150});
  const QPointF middle = transform_.ToPicture({200, 150});
  transform_.SetView({600, 200});
  EXPECT_EQ(transform_.Zoom(), 2);
  ExpectNear(transform_.ToPicture({300, 100}), middle);
}

TEST_F(ViewTransformTest, PanningKeepsThePictureInReach) {
  transform_.Pan({10, -5});
  EXPECT_EQ(transform_.PictureRect(), QRectF(10, 45, 400, 200));
  transform_.Pan({10000, -10000});
  EXPECT_TRUE(transform_.PictureRect().intersects(QRectF(0, 0, 400, 300)));
}

TEST_F(ViewTransformTest, OnlyAPictureOfAnotherSizeIsFittedAnew) {
  transform_.ZoomTo(2, {0, 0});
  transform_.SetPicture({800, 400});
  EXPECT_EQ(transform_.Zoom(), 2);
  transform_.SetPicture({400, 400});
  EXPECT_EQ(transform_.Zoom(), 0.75);
}

TEST_F(ViewTransformTest, BothDirectionsAgree) {
  transform_.ZoomTo(1.7, {33, 44});
  const QPointF point(123.5, 45.25);
  ExpectNear(transform_.ToPicture(transform_.ToView(point)), point);
  ExpectNear(transform_.ToView().map(point), transform_.ToView(point));
}

}  // namespace
}  // namespace vitrell::panel
