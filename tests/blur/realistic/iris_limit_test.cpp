// The largest iris that the realistic blur takes.
#include <gtest/gtest.h>

#include <limits>

#include "blur/realistic/iris_shape.h"
#include "blur/realistic/realistic_blur.h"
#include "host/fake_host.h"
#include "host/picture.h"
#include "pass/call_stage.h"

namespace vitrell {
namespace {

PF_Err Blur(float amount) {
  FakeHost host;
  LX_Info info = {};
  info.realisticVisible = 1;
  info.realisticAmount = amount;
  info.irisSides = 3;
  info.irisAspectRatio = 1;
  Picture<PF_Pixel> src(3, 3);
  src.Fill({255, 40, 50, 60});
  Picture<PF_Pixel> dst(3, 3);
  const Picture<PF_Pixel> untouched = dst;
  const PF_Err err =
      CallStage(RenderReleasticBlurEffect, host.inData(), src.get(), dst.get(), info);
  EXPECT_EQ(dst.SameBytes(untouched), err != PF_Err_NONE);
  return err;
}

TEST(IrisLimitTest, ARadiusOf2000IsBlurredAndOneBeyondIsNot) {
  LX_Info info = {};
  info.realisticAmount = 20.0F;
  ASSERT_EQ(MaxIrisRadius(info), 2000);
  EXPECT_EQ(Blur(info.realisticAmount), PF_Err_NONE);
  info.realisticAmount = 20.010001F;
  ASSERT_EQ(MaxIrisRadius(info), 2001);
  EXPECT_EQ(Blur(info.realisticAmount), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(Blur(std::numeric_limits<float>::infinity()), PF_Err_OUT_OF_MEMORY);
}

}  // namespace
}  // namespace vitrell
