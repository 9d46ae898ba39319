// The panel of controls: made from what the effect registered, edited by mouse and keyboard.
#include "panel/widgets/control_panel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDial>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSlider>
#include <QTest>
#include <QToolButton>
#include <map>
#include <set>
#include <string>

#include "headless/fakes/fake_effect.h"
#include "look/value_text.h"
#include "panel/effect_panel.h"
#include "panel/hand.h"
#include "panel/widgets/control_row.h"
#include "panel/widgets/group_box.h"
#include "panel/widgets/scrub_field.h"
#include "panel/widgets/value_editor.h"

namespace vitrell::panel {
namespace {

using testing::ElementsAre;

class ControlPanelTest : public testing::Test {
 protected:
  ControlPanelTest() {
    panel_.resize(480, 3000);
    panel_.SetPictureSize({200, 100});
    QObject::connect(&panel_, &ControlPanel::Edited,
                     [this](int control, const look::Value& value, EditPhase phase) {
                       const look::Control& edited =
                           EffectPanel().controls[static_cast<std::size_t>(control)];
                       edits_.push_back(edited.name + "=" + look::FormatValue(edited, value) +
                                        (phase == EditPhase::kDragging ? "..." : ""));
                     });
    const auto note = [this](const std::string& what) {
      return [this, what](int control) { signals_.push_back(what + std::to_string(control)); };
    };
    QObject::connect(&panel_, &ControlPanel::ResetControl, note("reset "));
    QObject::connect(&panel_, &ControlPanel::PickPoint, note("pick "));
    QObject::connect(&panel_, &ControlPanel::StopwatchToggled, note("stopwatch "));
    QObject::connect(&panel_, &ControlPanel::ResetAll, [this] { signals_.push_back("reset all"); });
    QObject::connect(&panel_, &ControlPanel::ResetGroup, [this](std::size_t row) {
      signals_.push_back("reset group " + EffectPanel().rows[row].title);
    });
    ShowActive(panel_);
  }

  ControlRow* Row(const char* name) { return panel_.findChild<ControlRow*>(name); }
  template <typename Widget>
  Widget* In(const char* name, int which = 0) {
    panel_.Choose(ControlOf(name));
    return Row(name)->Editor()->findChildren<Widget*>().at(which);
  }
  GroupBox* Group(const char* title) {
    for (GroupBox* const group : panel_.findChildren<GroupBox*>()) {
      if (group->Title() == title) return group;
    }
    return nullptr;
  }
  void Show(const char* name, const look::Value& value, bool differs = true) {
    panel_.ShowValue(ControlOf(name), value, differs, false);
  }

  ControlPanel panel_{EffectPanel()};
  std::vector<std::string> edits_;
  std::vector<std::string> signals_;
};

TEST_F(ControlPanelTest, EveryControlHasARowInThePanelsOrder) {
  std::vector<std::string> expected, rows;
  for (const look::Control& control : EffectPanel().controls) expected.push_back(control.name);
  for (const ControlRow* row : panel_.findChildren<ControlRow*>()) {
    rows.push_back(row->objectName().toStdString());
  }
  // Children are found group by group.
  EXPECT_EQ(std::set(rows.begin(), rows.end()), std::set(expected.begin(), expected.end()));
  EXPECT_EQ(rows.size(), expected.size());
  int above = -1;
  for (const char* name : {"lens.type", "lens.rotation", "fast-blur.visible", "intensity"}) {
    const int y = Row(name)->mapTo(panel_.widget(), QPoint(0, 0)).y();
    EXPECT_GT(y, above) << name;
    above = y;
  }
}

TEST_F(ControlPanelTest, GroupsStartAsTheEffectSays) {
  for (const look::PanelRow& row : EffectPanel().rows) {
    if (!row.isGroup) continue;
    EXPECT_EQ(Group(row.title.c_str())->IsOpen(), !row.collapsed) << row.title;
  }
  EXPECT_TRUE(Row("fast-blur.amount")->isVisible());
  EXPECT_FALSE(Row("trail.amount")->isVisible());
  EXPECT_FALSE(Row("lens.custom-layer")->Editor()->isEnabled());  // greyed from the start
}

TEST_F(ControlPanelTest, GroupsOpenByMouseAndKeyboard) {
  auto* const title = Group("Trail")->findChild<QToolButton*>();
  QTest::mouseClick(title, Qt::LeftButton);
  EXPECT_TRUE(Row("trail.amount")->isVisible());
  title->setFocus();
  QTest::keyClick(title, Qt::Key_Space);
  EXPECT_FALSE(Row("trail.amount")->isVisible());
}

TEST_F(ControlPanelTest, SlidersDragOverTheSliderRangeAndFieldsOverTheValidOne) {
  auto* const slider = In<QSlider>("lens.feather");
  slider->setSliderDown(true);
  slider->setValue(slider->maximum() - 1);
  slider->setValue(slider->maximum());
  slider->setSliderDown(false);
  auto* const field = In<ScrubField>("lens.feather");
  QTest::keyClicks(field, "1000");
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_THAT(edits_, ElementsAre("lens.feather=499...", "lens.feather=500...", "lens.feather=500",
                                  "lens.feather=1000"));
  Show("lens.feather", 1000.0);
  EXPECT_EQ(slider->value(), slider->maximum());
  slider->setFocus();
  QTest::keyClick(slider, Qt::Key_Left);
  EXPECT_EQ(edits_.back(), "lens.feather=499");
}

TEST_F(ControlPanelTest, SlidersWithANegativeSideReachBothEnds) {
  auto* const slider = In<QSlider>("lightness.amount");
  slider->setFocus();
  QTest::keyClick(slider, Qt::Key_Home);
  QTest::keyClick(slider, Qt::Key_End);
  EXPECT_THAT(edits_, ElementsAre("lightness.amount=-100", "lightness.amount=100"));
}

TEST_F(ControlPanelTest, PopupsAreChosenByKeyboard) {
  auto* const box = In<QComboBox>("lens.type");
  EXPECT_EQ(box->currentText(), "Circle");
  box->setFocus();
  QTest::keyClick(box, Qt::Key_Down);
  EXPECT_THAT(edits_, ElementsAre("lens.type=Rectangle --"));
}

TEST_F(ControlPanelTest, CheckboxesAreClicked) {
  auto* const box = In<QCheckBox>("lens.invert-alpha");
  QTest::keyClick(box, Qt::Key_Space);
  box->click();
  EXPECT_THAT(edits_, ElementsAre("lens.invert-alpha=on", "lens.invert-alpha=off"));
}

TEST_F(ControlPanelTest, DialsPointUpAtNoneAndCountWholeTurns) {
  auto* const dial = In<QDial>("lens.rotation");
  EXPECT_EQ(dial->value(), 180);
  Show("lens.rotation", 350.0);
  EXPECT_EQ(dial->value(), 170);
  dial->setSliderDown(true);
  dial->setValue(190);  // over the top
  dial->setSliderDown(false);
  EXPECT_THAT(edits_, ElementsAre("lens.rotation=370...", "lens.rotation=370"));
  auto* const field = In<ScrubField>("lens.rotation");
  EXPECT_EQ(field->text(), "1x +10°");
  QTest::keyClicks(field, "-2x -30");
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(edits_.back(), "lens.rotation=-750");
  EXPECT_EQ(dial->value(), 150);
}

TEST_F(ControlPanelTest, ColoursAreTypedInEveryForm) {
  auto* const field = In<QLineEdit>("color.color");
  for (const char* text : {"orange", "#f80", "1,2,3"}) {
    field->selectAll();
    QTest::keyClicks(field, text);
    QTest::keyClick(field, Qt::Key_Return);
  }
  EXPECT_THAT(edits_,
              ElementsAre("color.color=#ffa500", "color.color=#ff8800", "color.color=#010203"));
  field->selectAll();
  QTest::keyClicks(field, "no colour");
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(edits_.size(), 3U);
  EXPECT_EQ(field->text(), "#010203");
}

TEST_F(ControlPanelTest, PositionsAreTypedAndKeepTheirPlaceInAnotherUnit) {
  auto* const x = In<ScrubField>("lens.position");
  QTest::keyClicks(x, "20 px");
  QTest::keyClick(x, Qt::Key_Return);
  auto* const unit = In<QComboBox>("lens.position");
  unit->setFocus();
  QTest::keyClick(unit, Qt::Key_Down);
  EXPECT_EQ(x->text(), "20 px");
  QTest::keyClick(unit, Qt::Key_Up);
  EXPECT_THAT(edits_,
              ElementsAre("lens.position=10%,50%", "lens.position=20,50", "lens.position=10%,50%"));
}

TEST_F(ControlPanelTest, PositionsCanBePicked) {
  In<QToolButton>("lens.position")->click();
  EXPECT_THAT(signals_, ElementsAre("pick " + std::to_string(ControlOf("lens.position"))));
}

TEST_F(ControlPanelTest, LayersAreFiles) {
  Row("lens.custom-layer")->ShowGreyed(false);
  auto* const field = In<QLineEdit>("lens.custom-layer");
  QTest::keyClicks(field, "mask.png");
  QTest::keyClick(field, Qt::Key_Return);
  In<QToolButton>("lens.custom-layer", 1)->click();
  EXPECT_THAT(edits_, ElementsAre("lens.custom-layer=mask.png", "lens.custom-layer=none"));
}

TEST_F(ControlPanelTest, GreyedControlsCannotBeEditedAndOthersCan) {
  std::vector<bool> greyed(EffectPanel().controls.size(), false);
  greyed[static_cast<std::size_t>(ControlOf("lens.scale"))] = true;
  panel_.ShowGreyed(greyed);
  for (std::size_t i = 0; i < greyed.size(); ++i) {
    const auto& name = EffectPanel().controls[i].name;
    EXPECT_EQ(Row(name.c_str())->Editor()->isEnabled(), !greyed[i]) << name;
  }
}

TEST_F(ControlPanelTest, ADoubleClickOnANameResets) {
  QTest::mouseDClick(Row("lens.scale")->findChild<QLabel*>(), Qt::LeftButton);
  QTest::mouseDClick(Group("II. BLUR")->findChild<QToolButton*>(), Qt::LeftButton);
  QTest::mouseDClick(panel_.widget()->findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly),
                     Qt::LeftButton);
  EXPECT_THAT(signals_, ElementsAre("reset " + std::to_string(ControlOf("lens.scale")),
                                    "reset group II. BLUR", "reset all"));
}

TEST_F(ControlPanelTest, ChangedControlsAndTheirGroupsAreMarked) {
  auto* const name = Row("fast-blur.amount")->findChild<QLabel*>();
  const auto marks = [&] {
    return std::vector<bool>{
        name->font().bold(),
        Group("Fast Blur")->findChild<QToolButton*>()->font().bold(),
        Group("II. BLUR")->findChild<QToolButton*>()->font().bold(),
        Group("I. LENS")->findChild<QToolButton*>()->font().bold(),
    };
  };
  EXPECT_THAT(marks(), ElementsAre(false, false, false, false));
  Show("fast-blur.amount", 35.0);
  EXPECT_THAT(marks(), ElementsAre(true, true, true, false));
  Show("fast-blur.amount", 20.0, false);
  EXPECT_THAT(marks(), ElementsAre(false, false, false, false));
}

TEST_F(ControlPanelTest, StopwatchesShowWhatMoves) {
  auto* const stopwatch = Row("lens.scale")->findChild<QToolButton*>();
  panel_.ShowValue(ControlOf("lens.scale"), 100.0, false, true);
  EXPECT_TRUE(stopwatch->isChecked());
  stopwatch->click();
  EXPECT_THAT(signals_, ElementsAre("stopwatch " + std::to_string(ControlOf("lens.scale"))));
}

// A layer's file is no value between two others.
TEST_F(ControlPanelTest, EveryControlButALayerHasAStopwatch) {
  for (const look::Control& control : EffectPanel().controls) {
    panel_.Choose(ControlOf(control.name));
    QToolButton* stopwatch = nullptr;
    for (auto* const button : Row(control.name.c_str())->findChildren<QToolButton*>()) {
      if (button->accessibleName().endsWith("stopwatch")) stopwatch = button;
    }
    ASSERT_NE(stopwatch, nullptr) << control.name;
    EXPECT_EQ(stopwatch->isVisible(), control.kind != look::ControlKind::kLayer) << control.name;
    signals_.clear();
    stopwatch->click();
    EXPECT_THAT(signals_, ElementsAre("stopwatch " + std::to_string(ControlOf(control.name))));
  }
}

TEST_F(ControlPanelTest, ShowingAValueEmitsNothing) {
  for (const look::Control& control : EffectPanel().controls) {
    Show(control.name.c_str(), control.defaultValue, false);
  }
  Show("lens.type", look::ChoiceValue{5});
  Show("lens.feather", 77.0);
  Show("lens.position", look::PointValue{{3, false}, {4, false}});
  Show("color.color", look::ColourValue{1, 2, 3});
  EXPECT_THAT(edits_, testing::IsEmpty());
}

TEST_F(ControlPanelTest, TheKeyboardReachesEveryEnabledControl) {
  for (GroupBox* const group : panel_.findChildren<GroupBox*>()) group->Open(true);
  panel_.ShowGreyed(std::vector<bool>(EffectPanel().controls.size(), false));
  panel_.Choose(ControlOf("lens.type"));
  std::set<std::string> reached;
  std::set<QWidget*> seen;
  while (seen.insert(QApplication::focusWidget()).second) {
    for (QWidget* widget = QApplication::focusWidget(); widget != nullptr;
         widget = widget->parentWidget()) {
      if (qobject_cast<ValueEditor*>(widget) != nullptr) {
        reached.insert(widget->parentWidget()->objectName().toStdString());
      }
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(reached.size(), EffectPanel().controls.size());
}

TEST_F(ControlPanelTest, OnlyTheHeightIsScrolled) {
  for (GroupBox* const group : panel_.findChildren<GroupBox*>()) group->Open(true);
  panel_.resize(panel_.minimumSizeHint().width(), 300);
  QApplication::processEvents();
  EXPECT_FALSE(panel_.horizontalScrollBar()->isVisible());
  EXPECT_TRUE(panel_.verticalScrollBar()->isVisible());
}

TEST_F(ControlPanelTest, EverythingThatTakesTheKeyboardHasANameForScreenReaders) {
  std::map<QString, int> names;
  for (const QWidget* widget : panel_.findChildren<QWidget*>()) {
    if ((widget->focusPolicy() & Qt::TabFocus) == 0 || widget->focusProxy() != nullptr) continue;
    if (qobject_cast<ScrubField*>(widget->parentWidget()) != nullptr) continue;  // its text
    const auto* const button = qobject_cast<const QAbstractButton*>(widget);
    const bool hasText = button != nullptr && !button->text().isEmpty();
    EXPECT_TRUE(hasText || !widget->accessibleName().isEmpty())
        << widget->metaObject()->className();
    ++names[widget->accessibleName()];
  }
  EXPECT_EQ(names["Fast Blur: Amount"], 2);  // slider and field
  EXPECT_EQ(names["Trail: Center, x"], 1);
}

TEST(ControlPanelOfOtherEffectTest, ANewControlAppears) {
  namespace fakes = headless::fakes;
  const auto setup = [](const fakes::Command& command) {
    const PF_Err error = fakes::AddDefaultParameters(command);
    command.out->num_params = 5;
    PF_ParamDef turn = fakes::MakeRecord(PF_Param_ANGLE, "New Turn", 4);
    return error != PF_Err_NONE ? error : command.in->inter.add_param(command.Ref(), -1, &turn);
  };
  fakes::SetBehaviours({{PF_Cmd_PARAMS_SETUP, setup}});
  const look::Panel panel = look::MakePanel(headless::EffectHost(fakes::Module()).Parameters());
  const ControlPanel widget(panel);
  ASSERT_EQ(panel.controls.size(), 4U);
  EXPECT_NE(widget.findChild<ControlRow*>("amount")->findChild<QSlider*>(), nullptr);
  EXPECT_NE(widget.findChild<ControlRow*>("new-turn")->findChild<QDial*>(), nullptr);
}

}  // namespace
}  // namespace vitrell::panel
