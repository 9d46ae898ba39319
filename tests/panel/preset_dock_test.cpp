// The browser of presets: those that come with the program, the user's own, and saving.
#include "panel/window/preset_dock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QKeySequence>
#include <QListWidget>
#include <QTest>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "panel/model/places.h"
#include "panel/window_fixture.h"

namespace vitrell::panel {
namespace {

using testing::ElementsAre;

class PresetDockTest : public WindowTest {
 protected:
  QListWidget& List() { return *window_->findChild<PresetDock*>()->findChild<QListWidget*>(); }
  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (int i = 0; i < List().count(); ++i) names.push_back(List().item(i)->text().toStdString());
    return names;
  }
  QImage IconOf(int item) { return List().item(item)->icon().pixmap(List().iconSize()).toImage(); }
  std::vector<QImage> Icons() {
    std::vector<QImage> icons;
    for (int i = 0; i < List().count(); ++i) icons.push_back(IconOf(i));
    return icons;
  }
  // Whether every icon is another one than before.
  bool AllDifferFrom(const std::vector<QImage>& before) {
    for (int i = 0; i < List().count(); ++i) {
      if (IconOf(i) == before.at(static_cast<std::size_t>(i))) return false;
    }
    return true;
  }
  void ChooseByKeyboard(int item) {
    List().setCurrentRow(item);
    QTest::keyClick(&List(), Qt::Key_Return);
  }
  void AnswerSaving(const fs::path& file) {
    InDialog<QFileDialog>([file](QFileDialog& dialog) { Choose(dialog, file); });
  }
  static std::string Bytes(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  const fs::path shipped_ = fs::path(VITRELL_PRESET_FOLDER) / "bokeh-street.json";
};

TEST_F(PresetDockTest, TheShippedOnesStandThere) {
  EXPECT_THAT(Names(), ElementsAre("bokeh street", "dream vignette", "tilt shift"));
}

TEST_F(PresetDockTest, TheyAreShownOnThePictureThatIsOpen) {
  const std::vector<QImage> empty = Icons();
  OpenPicture();
  ASSERT_TRUE(WaitUntil([&] { return AllDifferFrom(empty); }));
  const std::vector<QImage> first = Icons();
  EXPECT_NE(first[0], first[1]);
  EXPECT_NE(first[0], first[2]);
  EXPECT_NE(first[1], first[2]);
  const fs::path other = folder_ / "other.png";
  media::WritePictureFile(other, media::NoisePicture(96, 54, 3, OIIO::TypeDesc::UINT8, 77));
  window_->Open(other);
  EXPECT_TRUE(WaitUntil([&] { return AllDifferFrom(first); }));
}

TEST_F(PresetDockTest, EachOfThemIsLoadedAsAStepThatCanBeUndone) {
  Edited().SetValue(At("fast-blur.amount"), 33.0, EditPhase::kDone);
  std::vector<std::vector<look::Value>> looks;
  for (int i = 0; i < 3; ++i) {
    ChooseByKeyboard(i);
    EXPECT_EQ(Message(), "");
    EXPECT_FALSE(Edited().IsChanged());
    EXPECT_TRUE(window_->windowTitle().contains(List().item(i)->text().replace(' ', '-')))
        << window_->windowTitle().toStdString();
    EXPECT_EQ(Edited().Undo().count(), 2 + i);
    EXPECT_THAT(looks, testing::Not(testing::Contains(Edited().Settings().Values())));
    looks.push_back(Edited().Settings().Values());
  }
  for (int i = 0; i < 3; ++i) Edited().Undo().undo();
  EXPECT_EQ(Edited().ValueOf(At("fast-blur.amount")), look::Value(33.0));
}

TEST_F(PresetDockTest, AChangedShippedOneIsSavedUnderANameThatIsAskedFor) {
  const std::string before = Bytes(shipped_);
  ChooseByKeyboard(0);
  Edited().SetValue(At("intensity"), 12.0, EditPhase::kDone);
  AnswerSaving(folder_ / "mine.json");
  ActionWith(QKeySequence::Save)->trigger();
  EXPECT_EQ(Bytes(shipped_), before);
  EXPECT_EQ(Edited().PresetFile(), folder_ / "mine.json");
  // From now on it has a name.
  Edited().SetValue(At("intensity"), 13.0, EditPhase::kDone);
  ActionWith(QKeySequence::Save)->trigger();
  EXPECT_FALSE(Edited().IsChanged());
  Document saved(module_);
  saved.LoadPreset(folder_ / "mine.json");
  EXPECT_EQ(saved.ValueOf(At("intensity")), look::Value(13.0));
}

TEST_F(PresetDockTest, SavedAsAnotherOneTheFirstStaysAndTheNewOneIsShown) {
  Edited().SetValue(At("intensity"), 12.0, EditPhase::kDone);
  ASSERT_TRUE(window_->SavePreset(OwnPresets() / "first.json"));
  const std::string first = Bytes(OwnPresets() / "first.json");
  OpenPicture();
  Edited().SetValue(At("intensity"), 14.0, EditPhase::kDone);
  AnswerSaving(OwnPresets() / "second-one.json");
  ActionOf("Save Preset As")->trigger();
  EXPECT_EQ(Bytes(OwnPresets() / "first.json"), first);
  EXPECT_EQ(Edited().PresetFile(), OwnPresets() / "second-one.json");
  EXPECT_THAT(Names(),
              ElementsAre("bokeh street", "dream vignette", "tilt shift", "first", "second one"));
  EXPECT_TRUE(WaitUntil([this] { return IconOf(3) != IconOf(4); }));
}

TEST_F(PresetDockTest, ATypedNameGetsTheEndingOfPresets) {
  Edited().SetValue(At("intensity"), 12.0, EditPhase::kDone);
  AnswerSaving(folder_ / "mine");
  ActionOf("Save Preset As")->trigger();
  EXPECT_TRUE(fs::exists(folder_ / "mine.json"));
  EXPECT_FALSE(fs::exists(folder_ / "mine"));
}

TEST_F(PresetDockTest, APresetThatCannotBeWrittenIsToldAndStaysUnsaved) {
  Edited().SetValue(At("intensity"), 12.0, EditPhase::kDone);
  EXPECT_FALSE(window_->SavePreset(folder_ / "missing" / "mine.json"));
  EXPECT_NE(Message().find("mine.json"), std::string::npos) << Message();
  EXPECT_TRUE(Edited().IsChanged());
  EXPECT_EQ(Edited().ValueOf(At("intensity")), look::Value(12.0));
}

}  // namespace
}  // namespace vitrell::panel
