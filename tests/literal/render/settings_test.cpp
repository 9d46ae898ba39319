// The literal settings against numbers worked out by hand.
#include "literal/render/settings.h"

#include <gtest/gtest.h>

#include <vector>

#include "literal/base/types.h"

namespace vitrell::literal {
namespace {

TEST(LiteralSettingsTest, ConvertsPointsAnglesAndBoxes) {
  std::vector<PF_ParamDef> records(65);
  std::vector<const PF_ParamDef*> params;
  params.reserve(records.size());
  for (const PF_ParamDef& record : records) {
    params.push_back(&record);
  }
  records[7].u.td.x_value = 125829120;
  records[7].u.td.y_value = -98304;
  records[8].u.fs_d.value = 50;
  records[9].u.fs_d.value = 300;
  records[11].u.ad.value = 90 * 65536;
  records[15].u.bd.value = 257;
  records[17].u.bd.value = 256;
  records[21].u.fs_d.value = 53;
  records[53].u.cd.value = {1, 2, 3, 4};
  const Settings settings = SettingsFromParams(params.data());
  EXPECT_EQ(settings.positionX, 1919);
  EXPECT_EQ(settings.positionY, -1);
  EXPECT_EQ(settings.scaleWidth, 1.5F);
  EXPECT_EQ(settings.scaleHeight, 0.0F);
  EXPECT_EQ(settings.rotation, 1.5707963267948966);
  EXPECT_EQ(settings.fastBlurVisible, 1);
  EXPECT_EQ(settings.fastBlurUseLensAsBlurMap, 0);
  EXPECT_EQ(settings.realisticAmount, 53.0F / 100.0F);
  EXPECT_EQ(settings.colorValue[3], 4);
}

}  // namespace
}  // namespace vitrell::literal
