// The parameter panel: what is greyed out, what the host is asked to redraw, and in which order.
#include "shell/panel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <vector>

#include "shell/parameters.h"

namespace vitrell {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr PF_ParamUIFlags kOtherUiFlags = PF_PUI_INVISIBLE | PF_PUI_ECW_SEPARATOR;
constexpr PF_ParamUIFlags kGreyed = kOtherUiFlags | PF_PUI_DISABLED;

// What the host saw; its callbacks have no other way back to the test.
struct HostRecord {
  std::vector<PF_ParamIndex> updates;
  std::vector<const PF_ParamDef*> records;
  std::vector<PF_ParamUIFlags> uiFlagsAtUpdate;
  std::vector<PF_ParamFlags> flagsAtUpdate;
  int acquires = 0;
  int releases = 0;
  bool refusesSuite = false;
};
HostRecord g_record;

PF_Err UpdateParamUI(PF_ProgPtr /*effectRef*/, PF_ParamIndex index, const PF_ParamDef* param) {
  g_record.updates.push_back(index);
  g_record.records.push_back(param);
  g_record.uiFlagsAtUpdate.push_back(param->ui_flags);
  g_record.flagsAtUpdate.push_back(param->flags);
  return PF_Err_INTERNAL_STRUCT_DAMAGED;  // Failing redraws are ignored.
}

const PF_ParamUtilsSuite3 kParamUtils = {UpdateParamUI, nullptr, nullptr, nullptr, nullptr,
                                         nullptr,       nullptr, nullptr, nullptr};

SPErr AcquireSuite(const char* name, std::int32_t version, const void** suite) {
  if (g_record.refusesSuite || std::strcmp(name, "PF Param Utils Suite") != 0 || version != 3) {
    return kSPSuiteNotFoundError;
  }
  ++g_record.acquires;
  *suite = &kParamUtils;
  return 0;
}

SPErr ReleaseSuite(const char* name, std::int32_t version) {
  EXPECT_STREQ("PF Param Utils Suite", name);
  EXPECT_EQ(3, version);
  ++g_record.releases;
  return 0;
}

// A host's parameter array, every record of which carries two ui flags of the host's own.
class PanelTest : public ::testing::Test {
 protected:
  PanelTest() {
    g_record = {};
    basic_.AcquireSuite = AcquireSuite;
    basic_.ReleaseSuite = ReleaseSuite;
    inData_.pica_basicP = &basic_;
    for (std::size_t i = 0; i < PARAM_COUNT; ++i) {
      params_[i].ui_flags = kOtherUiFlags;
      pointers_[i] = &params_[i];
    }
    params_[PARAM_TYPE].u.pd.value = kLensCircle;
  }

  void Run() { UserChangedParam(&inData_, pointers_); }

  void RunWithType(LensType type) {
    params_[PARAM_TYPE].u.pd.value = type;
    Run();
  }

  // Indices of the records whose ui flags are not as they were set up.
  std::map<PF_ParamIndex, PF_ParamUIFlags> ChangedUiFlags() const {
    std::map<PF_ParamIndex, PF_ParamUIFlags> changed;
    for (PF_ParamIndex i = 0; i < PARAM_COUNT; ++i) {
      if (params_[i].ui_flags != kOtherUiFlags) {
        changed[i] = params_[i].ui_flags;
      }
    }
    return changed;
  }

  SPBasicSuite basic_ = {};
  PF_InData inData_ = {};
  PF_ParamDef params_[PARAM_COUNT] = {};
  PF_ParamDef* pointers_[PARAM_COUNT] = {};
};

TEST_F(PanelTest, UpdatesThirteenTimesInOrder) {
  Run();
  EXPECT_THAT(g_record.updates, ElementsAre(5, 11, 8, 3, 4, 6, 6, 8, 10, 9, 11, 32, 38));
  for (std::size_t i = 0; i < g_record.updates.size(); ++i) {
    EXPECT_EQ(pointers_[g_record.updates[i]], g_record.records[i]) << "not the host's own record";
  }
  EXPECT_EQ(1, g_record.acquires);
  EXPECT_EQ(1, g_record.releases);
}

TEST_F(PanelTest, TypeNoneGreysTheWholeShape) {
  RunWithType(kLensNone);
  const std::map<PF_ParamIndex, PF_ParamUIFlags> expected = {{PARAM_CUSTOM_LAYER, kGreyed},
                                                             {PARAM_PLACEMENT, kGreyed},
                                                             {PARAM_INVERT_ALPHA, kGreyed},
                                                             {PARAM_FEATHER, kGreyed},
                                                             {PARAM_SCALE, kGreyed},
                                                             {PARAM_SCALE_WIDTH, kGreyed},
                                                             {PARAM_SCALE_HEIGHT, kGreyed},
                                                             {PARAM_ROTATION, kGreyed},
                                                             {PARAM_OPTICAL_CENTER, PF_PUI_NONE},
                                                             {PARAM_TRAIL_CENTER, PF_PUI_NONE}};
  EXPECT_EQ(expected, ChangedUiFlags());
}

TEST_F(PanelTest, DrawnTypesGreyTheCustomLayerOnly) {
  for (const LensType type : {kLensCircle, kLensWideRectangle, kLensTallRectangle, kLensTriangle}) {
    for (PF_ParamDef& param : params_) {
      param.ui_flags = kOtherUiFlags;
    }
    RunWithType(type);
    const std::map<PF_ParamIndex, PF_ParamUIFlags> expected = {
        {PARAM_CUSTOM_LAYER, kGreyed},       {PARAM_PLACEMENT, kGreyed},
        {PARAM_INVERT_ALPHA, PF_PUI_NONE},   {PARAM_FEATHER, PF_PUI_NONE},
        {PARAM_SCALE, PF_PUI_NONE},          {PARAM_SCALE_WIDTH, PF_PUI_NONE},
        {PARAM_SCALE_HEIGHT, PF_PUI_NONE},   {PARAM_ROTATION, PF_PUI_NONE},
        {PARAM_OPTICAL_CENTER, PF_PUI_NONE}, {PARAM_TRAIL_CENTER, PF_PUI_NONE}};
    EXPECT_EQ(expected, ChangedUiFlags()) << "type " << type;
  }
}

TEST_F(PanelTest, TypeCustomGreysFeatherOnly) {
  RunWithType(kLensCustom);
  const std::map<PF_ParamIndex, PF_ParamUIFlags> expected = {
      {PARAM_CUSTOM_LAYER, PF_PUI_NONE},   {PARAM_PLACEMENT, PF_PUI_NONE},
      {PARAM_INVERT_ALPHA, PF_PUI_NONE},   {PARAM_FEATHER, kGreyed},
      {PARAM_SCALE, PF_PUI_NONE},          {PARAM_SCALE_WIDTH, PF_PUI_NONE},
      {PARAM_SCALE_HEIGHT, PF_PUI_NONE},   {PARAM_ROTATION, PF_PUI_NONE},
      {PARAM_OPTICAL_CENTER, PF_PUI_NONE}, {PARAM_TRAIL_CENTER, PF_PUI_NONE}};
  EXPECT_EQ(expected, ChangedUiFlags());
}

TEST_F(PanelTest, KeepsNoOtherUiFlagOfAnEnabledControl) {
  RunWithType(kLensCustom);
  EXPECT_EQ(PF_PUI_NONE, params_[PARAM_CUSTOM_LAYER].ui_flags);
  RunWithType(kLensCircle);
  EXPECT_EQ(PF_PUI_DISABLED, params_[PARAM_CUSTOM_LAYER].ui_flags);
}

TEST_F(PanelTest, TickedCenterOfTheLensGreysTheCenterAndKeepsItsOtherFlags) {
  params_[PARAM_OPTICAL_LENS_CENTER].u.bd.value = 1;
  params_[PARAM_TRAIL_LENS_CENTER].u.bd.value = 0x101;  // Only the low byte counts.
  Run();
  EXPECT_EQ(kGreyed, params_[PARAM_OPTICAL_CENTER].ui_flags);
  EXPECT_EQ(kGreyed, params_[PARAM_TRAIL_CENTER].ui_flags);
  params_[PARAM_OPTICAL_LENS_CENTER].u.bd.value = 0x100;
  params_[PARAM_TRAIL_LENS_CENTER].u.bd.value = 2;
  Run();
  EXPECT_EQ(PF_PUI_NONE, params_[PARAM_OPTICAL_CENTER].ui_flags);
  EXPECT_EQ(PF_PUI_NONE, params_[PARAM_TRAIL_CENTER].ui_flags);
}

TEST_F(PanelTest, OneTickedCenterLeavesTheOtherAlone) {
  params_[PARAM_TRAIL_LENS_CENTER].u.bd.value = 1;
  Run();
  EXPECT_EQ(PF_PUI_NONE, params_[PARAM_OPTICAL_CENTER].ui_flags);
  EXPECT_EQ(kGreyed, params_[PARAM_TRAIL_CENTER].ui_flags);
}

// The host sends its command for supervised controls only, and the two boxes are not among them.
TEST_F(PanelTest, OnlyTypeAndTheTwoBlurMapBoxesAreSupervised) {
  std::vector<PF_ParamIndex> supervised;
  for (const ParameterRow& row : kParameterTable) {
    if ((row.flags & PF_ParamFlag_SUPERVISE) != 0) {
      supervised.push_back(row.index);
    }
  }
  EXPECT_THAT(supervised, ElementsAre(PARAM_TYPE, PARAM_FAST_BLUR_MAP, PARAM_REALISTIC_BLUR_MAP));
}

TEST_F(PanelTest, BlurMapBoxesChangeNothingOfTheRun) {
  RunWithType(kLensNone);
  const auto before = ChangedUiFlags();
  const auto updates = g_record.updates;
  g_record.updates.clear();
  params_[PARAM_FAST_BLUR_MAP].u.bd.value = 1;
  params_[PARAM_REALISTIC_BLUR_MAP].u.bd.value = 1;
  Run();
  EXPECT_EQ(before, ChangedUiFlags());
  EXPECT_EQ(updates, g_record.updates);
}

TEST_F(PanelTest, CollapsesFiveSlidersForGood) {
  params_[PARAM_SCALE].flags = PF_ParamFlag_CANNOT_TIME_VARY;
  Run();
  for (PF_ParamIndex i = 0; i < PARAM_COUNT; ++i) {
    const bool isSlider =
        i == PARAM_FEATHER || i == PARAM_ROTATION || (i >= PARAM_SCALE && i <= PARAM_SCALE_HEIGHT);
    const PF_ParamFlags own = i == PARAM_SCALE ? PF_ParamFlag_CANNOT_TIME_VARY : 0;
    EXPECT_EQ(own | (isSlider ? PF_ParamFlag_COLLAPSE_TWIRLY : 0), params_[i].flags) << i;
  }
}

// "Scale Width" (9) and "Scale Height" (10) get their ui flags early and are redrawn late; the
// first redraw of "Feather" (6), "Scale" (8) and "Rotation" (11) is still without the twirly.
TEST_F(PanelTest, KeepsTheRepeatedRedraws) {
  RunWithType(kLensNone);
  EXPECT_THAT(g_record.uiFlagsAtUpdate,
              ElementsAre(kGreyed, kGreyed, kGreyed, kGreyed, kGreyed, kGreyed, kGreyed, kGreyed,
                          kGreyed, kGreyed, kGreyed, PF_PUI_NONE, PF_PUI_NONE));
  constexpr PF_ParamFlags kTwirly = PF_ParamFlag_COLLAPSE_TWIRLY;
  EXPECT_THAT(g_record.flagsAtUpdate,
              ElementsAre(0, 0, 0, 0, 0, 0, kTwirly, kTwirly, kTwirly, kTwirly, kTwirly, 0, 0));
}

TEST_F(PanelTest, ChangesNoValue) {
  for (PF_ParamIndex i = 0; i < PARAM_COUNT; ++i) {
    params_[i].u.pd.value = 1 + i;
  }
  params_[PARAM_TYPE].u.pd.value = kLensCustom;
  Run();
  for (PF_ParamIndex i = 0; i < PARAM_COUNT; ++i) {
    EXPECT_EQ(i == PARAM_TYPE ? kLensCustom : 1 + i, params_[i].u.pd.value);
  }
}

PF_Err ErrorThrownBy(PF_InData* inData, PF_ParamDef* params[]) {
  try {
    UserChangedParam(inData, params);
  } catch (const PF_Err thrown) {
    return thrown;
  }
  return PF_Err_NONE;
}

TEST_F(PanelTest, MissingBasicSuiteThrowsBeforeAnyChange) {
  inData_.pica_basicP = nullptr;
  params_[PARAM_TYPE].u.pd.value = kLensNone;
  EXPECT_EQ(PF_Err_BAD_CALLBACK_PARAM, ErrorThrownBy(&inData_, pointers_));
  EXPECT_TRUE(ChangedUiFlags().empty());
  EXPECT_THAT(g_record.updates, IsEmpty());
}

TEST_F(PanelTest, MissingUtilsSuiteThrowsAfterTheShapeControls) {
  g_record.refusesSuite = true;
  params_[PARAM_TYPE].u.pd.value = kLensNone;
  EXPECT_EQ(PF_Err_BAD_CALLBACK_PARAM, ErrorThrownBy(&inData_, pointers_));
  const std::map<PF_ParamIndex, PF_ParamUIFlags> expected = {{PARAM_INVERT_ALPHA, kGreyed},
                                                             {PARAM_SCALE, kGreyed},
                                                             {PARAM_SCALE_WIDTH, kGreyed},
                                                             {PARAM_SCALE_HEIGHT, kGreyed},
                                                             {PARAM_ROTATION, kGreyed}};
  EXPECT_EQ(expected, ChangedUiFlags());
  EXPECT_THAT(g_record.updates, IsEmpty());
  EXPECT_EQ(0, g_record.releases);
}

TEST_F(PanelTest, PresetTableStaysZero) {
  Run();
  const auto* const bytes = reinterpret_cast<const unsigned char*>(g_preset_infos);
  EXPECT_TRUE(std::all_of(bytes, bytes + sizeof(g_preset_infos),
                          [](unsigned char byte) { return byte == 0; }));
  EXPECT_EQ(2 * sizeof(LX_Info), sizeof(g_preset_infos));
}

}  // namespace
}  // namespace vitrell
