// Changes and their undoing, greyed controls, presets as steps.
#include "panel/model/document.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QSignalSpy>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "headless/fakes/fake_effect.h"
#include "look/value_text.h"
#include "media/failure.h"
#include "panel/random_look.h"
#include "panel/real_module.h"
#include "whole/dice.h"

namespace vitrell::panel {
namespace {

// All values as text, which is as exact as the values.
std::vector<std::string> State(const Document& document) {
  std::vector<std::string> state;
  for (const look::Control& control : document.Panel().controls) {
    state.push_back(look::FormatValue(control, document.Settings().ValueOf(control)));
  }
  return state;
}

class DocumentTest : public testing::Test {
 protected:
  ~DocumentTest() override { std::filesystem::remove(preset_); }

  int At(const char* name) const { return PositionOf(document_.Panel(), name); }
  void Set(const char* name, const look::Value& value, EditPhase phase = EditPhase::kDone) {
    document_.SetValue(At(name), value, phase);
  }
  int Steps() { return document_.Undo().count(); }

  Document document_{RealModule()};
  std::filesystem::path preset_ =
      std::filesystem::temp_directory_path() / ("panel-" + std::to_string(::getpid()) + ".json");
};

TEST_F(DocumentTest, UndoAndRedoOver500RandomChangesEqualReplay) {
  whole::Dice dice(20);
  std::vector<std::vector<std::string>> history = {State(document_)};
  const int controls = static_cast<int>(document_.Panel().controls.size());
  for (int change = 0; change < 500; ++change) {
    const int control = dice.Below(controls);
    const look::Value value =
        RandomValue(dice, document_.Panel().controls[static_cast<std::size_t>(control)]);
    if (value == document_.ValueOf(control)) continue;
    document_.SetValue(control, value, EditPhase::kDone);
    history.push_back(State(document_));
  }
  ASSERT_GT(history.size(), 350U);
  ASSERT_EQ(static_cast<std::size_t>(Steps()), history.size() - 1);
  for (std::size_t i = history.size() - 1; i-- > 0;) {
    document_.Undo().undo();
    ASSERT_EQ(State(document_), history[i]) << "after undoing step " << i;
  }
  EXPECT_FALSE(document_.Undo().canUndo());
  for (std::size_t i = 1; i < history.size(); ++i) {
    document_.Undo().redo();
    ASSERT_EQ(State(document_), history[i]) << "after redoing step " << i;
  }
}

TEST_F(DocumentTest, ADragIsOneStep) {
  for (int i = 1; i <= 40; ++i) Set("fast-blur.amount", 1.0 * i, EditPhase::kDragging);
  Set("fast-blur.amount", 41.0, EditPhase::kDone);
  EXPECT_EQ(Steps(), 1);
  Set("fast-blur.amount", 50.0, EditPhase::kDragging);
  EXPECT_EQ(Steps(), 2);
  document_.Undo().undo();
  EXPECT_EQ(document_.ValueOf(At("fast-blur.amount")), look::Value(41.0));
  document_.Undo().undo();
  EXPECT_FALSE(document_.DiffersFromDefault(At("fast-blur.amount")));
}

TEST_F(DocumentTest, ADragOfTwoControlsIsOneStep) {
  Set("lens.scale-width", 150.0, EditPhase::kDragging);
  Set("lens.scale-height", 90.0, EditPhase::kDragging);
  Set("lens.scale-width", 160.0, EditPhase::kDone);
  EXPECT_EQ(Steps(), 1);
  document_.Undo().undo();
  EXPECT_FALSE(document_.DiffersFromDefault(At("lens.scale-width")));
  EXPECT_FALSE(document_.DiffersFromDefault(At("lens.scale-height")));
}

TEST_F(DocumentTest, ADragBackToItsBeginningIsNoStep) {
  const look::Value before = document_.ValueOf(At("lens.feather"));
  Set("lens.feather", 80.0, EditPhase::kDragging);
  Set("lens.feather", before, EditPhase::kDone);
  EXPECT_EQ(Steps(), 0);
  Set("lens.feather", before);
  EXPECT_EQ(Steps(), 0);
}

TEST_F(DocumentTest, ResettingAGroupLeavesTheOthersAlone) {
  Set("fast-blur.amount", 77.0);
  Set("lens.feather", 88.0);
  std::size_t row = 0;
  while (document_.Panel().rows[row].isGroup == false ||
         document_.Panel().rows[row].title.find("Fast") == std::string::npos) {
    ++row;
  }
  document_.ResetGroup(row);
  EXPECT_FALSE(document_.DiffersFromDefault(At("fast-blur.amount")));
  EXPECT_TRUE(document_.DiffersFromDefault(At("lens.feather")));
  document_.ResetAll();
  EXPECT_FALSE(document_.DiffersFromDefault(At("lens.feather")));
  document_.Undo().undo();
  document_.Undo().undo();
  EXPECT_EQ(document_.ValueOf(At("fast-blur.amount")), look::Value(77.0));
}

TEST_F(DocumentTest, APresetIsAStepAndTheListBeforeItStays) {
  std::ofstream(preset_) << R"({"lens.feather": 12, "picture-width": 960,
                                "lens.position": [96, 54]})";
  document_.SetPictureSize(1920, 1080);
  Set("fast-blur.amount", 30.0);
  const std::vector<std::string> before = State(document_);
  EXPECT_TRUE(document_.LoadPreset(preset_).empty());
  EXPECT_FALSE(document_.IsChanged());
  EXPECT_EQ(document_.ValueOf(At("lens.feather")), look::Value(12.0));
  // Twice the width that it was made for; what it does not name was at its default there.
  EXPECT_EQ(document_.ValueOf(At("fast-blur.amount")), look::Value(40.0));
  EXPECT_EQ(document_.ValueOf(At("lens.position")),
            look::Value(look::PointValue{{192, false}, {108, false}}));
  document_.Undo().undo();
  EXPECT_EQ(State(document_), before);
  EXPECT_TRUE(document_.IsChanged());
  document_.Undo().undo();
  EXPECT_FALSE(document_.DiffersFromDefault(At("fast-blur.amount")));
}

TEST_F(DocumentTest, ABadPresetChangesNothing) {
  std::ofstream(preset_) << R"({"lens.feather": 12, "lens.fether": 13})";
  Set("fast-blur.amount", 30.0);
  const std::vector<std::string> before = State(document_);
  try {
    document_.LoadPreset(preset_);
    FAIL();
  } catch (const media::Failure& failure) {
    EXPECT_NE(std::string(failure.what()).find("lens.fether"), std::string::npos);
  }
  EXPECT_EQ(State(document_), before);
  EXPECT_EQ(Steps(), 1);
}

TEST_F(DocumentTest, ASavedPresetReadsBack) {
  document_.SetPictureSize(1920, 1080);
  Set("color.color", look::ColourValue{1, 2, 3});
  Set("lens.position", look::PointValue{{333, false}, {222, false}});
  const std::vector<std::string> saved = State(document_);
  document_.SavePreset(preset_);
  EXPECT_FALSE(document_.IsChanged());
  document_.ResetAll();
  EXPECT_TRUE(document_.IsChanged());
  document_.LoadPreset(preset_);
  EXPECT_EQ(State(document_), saved);
}

// What the procedure says when a host asks it by itself.
TEST_F(DocumentTest, GreyedControlsFollowThePanelProcedureForAllLensTypes) {
  headless::EffectHost host(RealModule());
  const int type = At("lens.type");
  const look::Control& control = document_.Panel().controls[static_cast<std::size_t>(type)];
  std::vector<std::vector<bool>> seen;
  for (int choice = 1; choice <= static_cast<int>(control.choices.size()); ++choice) {
    document_.SetValue(type, look::ChoiceValue{choice}, EditPhase::kDone);
    host.SetPopup(control.index, choice);
    ASSERT_EQ(host.UserChangedParam(control.index), PF_Err_NONE);
    for (std::size_t i = 0; i < document_.Panel().controls.size(); ++i) {
      const look::Control& other = document_.Panel().controls[i];
      EXPECT_EQ(document_.Greyed()[i],
                host.Parameters()[static_cast<std::size_t>(other.index)].Greyed())
          << control.choices[static_cast<std::size_t>(choice - 1)] << ": " << other.name;
    }
    seen.push_back(document_.Greyed());
  }
  ASSERT_EQ(seen.size(), 6U);
  EXPECT_NE(seen[0], seen[1]);
  EXPECT_NE(seen[1], seen[5]);
  EXPECT_TRUE(document_.Greyed()[static_cast<std::size_t>(At("lens.feather"))]);
  document_.Undo().undo();
  EXPECT_FALSE(document_.Greyed()[static_cast<std::size_t>(At("lens.feather"))]);
}

TEST_F(DocumentTest, ASwitchGreysItsCentreAtOnce) {
  const auto centre = static_cast<std::size_t>(At("trail.center"));
  EXPECT_TRUE(document_.Greyed()[centre]);
  QSignalSpy greyed(&document_, &Document::GreyedChanged);
  Set("trail.center-of-the-lens", false);
  EXPECT_FALSE(document_.Greyed()[centre]);
  EXPECT_EQ(greyed.count(), 1);
}

// Nothing of the document knows the controls of one effect.
TEST(DocumentOfAnyEffectTest, ShowsWhatTheEffectRegisteredAndGreys) {
  namespace fakes = headless::fakes;
  const auto greyCenter = [](const fakes::Command& command) -> PF_Err {
    const auto* suite = fakes::Acquire<PF_ParamUtilsSuite3>(command, kPFParamUtilsSuite,
                                                            kPFParamUtilsSuiteVersion3);
    if (suite == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    const bool grey = command.params[1]->u.fs_d.value > 50;
    command.params[2]->ui_flags = grey ? PF_PUI_DISABLED : 0;
    return suite->PF_UpdateParamUI(command.Ref(), 2, command.params[2]);
  };
  fakes::SetBehaviours({{PF_Cmd_USER_CHANGED_PARAM, greyCenter}});
  Document document(fakes::Module());
  ASSERT_EQ(document.Panel().controls.size(), 3U);
  EXPECT_EQ(document.ValueOf(0), look::Value(20.0));
  EXPECT_FALSE(document.Greyed()[1]);
  document.SetValue(0, 60.0, EditPhase::kDone);
  EXPECT_TRUE(document.Greyed()[1]);
}

TEST(DocumentOfAnyEffectTest, AFailingProcedureIsToldAndLosesNothing) {
  namespace fakes = headless::fakes;
  fakes::SetBehaviours({{PF_Cmd_USER_CHANGED_PARAM,
                         [](const fakes::Command&) { return PF_Err{PF_Err_OUT_OF_MEMORY}; }}});
  Document document(fakes::Module());
  QSignalSpy complaints(&document, &Document::Complained);
  document.SetValue(0, 60.0, EditPhase::kDone);
  ASSERT_EQ(complaints.count(), 1);
  EXPECT_TRUE(complaints[0][0].toString().contains("PF_Err_OUT_OF_MEMORY (4)"));
  EXPECT_EQ(document.ValueOf(0), look::Value(60.0));
}

// A suite that it acquires and never releases.
PF_Err LeakSuite(const headless::fakes::Command& command) {
  static_cast<void>(headless::fakes::Acquire<void>(command, kPFAnsiSuite, 1));
  return PF_Err_NONE;
}

TEST(DocumentOfAnyEffectTest, AMisbehavingProcedureIsTold) {
  headless::fakes::SetBehaviours({{PF_Cmd_USER_CHANGED_PARAM, LeakSuite}});
  Document document(headless::fakes::Module());
  QSignalSpy complaints(&document, &Document::Complained);
  document.SetValue(0, 60.0, EditPhase::kDone);
  ASSERT_EQ(complaints.count(), 1);
  EXPECT_TRUE(complaints[0][0].toString().startsWith("The effect misbehaved: "))
      << complaints[0][0].toString().toStdString();
  EXPECT_EQ(document.ValueOf(0), look::Value(60.0));
}

// Nobody can listen while the document is made.
TEST(DocumentOfAnyEffectTest, WhatIsWrongFromTheStartIsToldOnceSomebodyListens) {
  namespace fakes = headless::fakes;
  fakes::SetBehaviours({{PF_Cmd_GLOBAL_SETUP, LeakSuite},
                        {PF_Cmd_UPDATE_PARAMS_UI,
                         [](const fakes::Command&) { return PF_Err{PF_Err_OUT_OF_MEMORY}; }}});
  Document document(fakes::Module());
  QSignalSpy complaints(&document, &Document::Complained);
  QCoreApplication::processEvents();
  ASSERT_EQ(complaints.count(), 2);
  EXPECT_TRUE(complaints[0][0].toString().contains("PF_Err_OUT_OF_MEMORY (4)"));
  EXPECT_TRUE(complaints[1][0].toString().startsWith("The effect misbehaved: "));
}

}  // namespace
}  // namespace vitrell::panel
