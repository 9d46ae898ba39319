// Starting over effects that are not there, fail, or misbehave.
#include "panel/window/window_start.h"

#include <gtest/gtest.h>

#include <QMessageBox>
#include <QPushButton>
#include <fstream>

#include "headless/fakes/fake_effect.h"
#include "panel/window_fixture.h"

namespace vitrell::panel {
namespace {

namespace fakes = headless::fakes;

class WindowStartTest : public WindowTest {
 protected:
  WindowOrder Order(const fs::path& effect) const {
    return {nullptr, effect, folder_ / "sessions", VITRELL_PRESET_FOLDER};
  }
  // Starts, notes what is told, and closes the message.
  std::unique_ptr<MainWindow> StartAndClose(const fs::path& effect) {
    told_.clear();
    InDialog<QMessageBox>([this](QMessageBox& box) {
      told_ = (box.text() + "\n" + box.informativeText()).toStdString();
      box.button(QMessageBox::Close)->click();
    });
    return StartWindow(Order(effect));
  }
  bool Told(const std::string& text) const { return told_.find(text) != std::string::npos; }

  std::string told_;
};

TEST_F(WindowStartTest, TheNamedEffectGetsAWindow) {
  const auto window = StartWindow(Order(VITRELL_MODULE_PATH));
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(window->Work().Edited().Panel().controls.size(), Edited().Panel().controls.size());
}

TEST_F(WindowStartTest, AnEffectThatIsNotThereIsTold) {
  EXPECT_EQ(StartAndClose(folder_ / "missing.so"), nullptr);
  EXPECT_TRUE(Told("missing.so")) << told_;
  EXPECT_TRUE(Told("--effect")) << told_;
}

TEST_F(WindowStartTest, AFileThatIsNoEffectIsToldAndTheLastSessionIsKept) {
  const fs::path lost = folder_ / "sessions" / "lost.json";
  Document(module_).WriteCopy(lost);
  std::ofstream(folder_ / "broken.so") << "no module";
  EXPECT_EQ(StartAndClose(folder_ / "broken.so"), nullptr);
  EXPECT_TRUE(Told("broken.so")) << told_;
  EXPECT_TRUE(Told("Choose another effect module")) << told_;
  EXPECT_TRUE(fs::exists(lost));
}

TEST_F(WindowStartTest, AnotherEffectCanBeChosen) {
  std::ofstream(folder_ / "broken.so") << "no module";
  InDialog<QMessageBox>([this](QMessageBox& box) {
    InDialog<QFileDialog>([](QFileDialog& dialog) { Choose(dialog, VITRELL_MODULE_PATH); });
    for (QAbstractButton* const button : box.buttons()) {
      if (button->text().startsWith("Choose")) return button->click();
    }
    FAIL() << "nothing to choose";
  });
  const auto window = StartWindow(Order(folder_ / "broken.so"));
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(window->Work().Edited().Panel().controls.size(), Edited().Panel().controls.size());
}

TEST_F(WindowStartTest, AnEffectThatFailsAtItsSetUpSaysWithWhat) {
  fakes::SetBehaviours(
      {{PF_Cmd_PARAMS_SETUP, [](const fakes::Command&) { return PF_Err{PF_Err_OUT_OF_MEMORY}; }}});
  try {
    const MainWindow window({fakes::Module(), {}, folder_ / "sessions", {}});
    FAIL();
  } catch (const headless::HostError& error) {
    const std::string text = error.what();
    EXPECT_NE(text.find("PF_Err_OUT_OF_MEMORY (4)"), std::string::npos) << text;
  }
}

// The controls are there, and what was wrong stands above them.
TEST_F(WindowStartTest, AnEffectThatFailsInItsPanelIsToldInTheWindow) {
  fakes::SetBehaviours({{PF_Cmd_UPDATE_PARAMS_UI,
                         [](const fakes::Command&) { return PF_Err{PF_Err_OUT_OF_MEMORY}; }}});
  MainWindow window({fakes::Module(), {}, folder_ / "sessions", {}});
  window.show();
  const auto text = [&window] { return window.Messages().Text().toStdString(); };
  ASSERT_TRUE(WaitUntil([&] { return !text().empty(); }));
  EXPECT_NE(text().find("PF_Err_OUT_OF_MEMORY (4)"), std::string::npos) << text();
  window.Work().Edited().SetValue(0, 60.0, EditPhase::kDone);
  EXPECT_EQ(window.Work().Edited().ValueOf(0), look::Value(60.0));
}

}  // namespace
}  // namespace vitrell::panel
