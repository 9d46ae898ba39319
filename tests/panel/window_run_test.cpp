// Rendering from the window's menu, by the built command line.
#include <gtest/gtest.h>

#include <QMessageBox>
#include <QProcess>
#include <QProgressBar>

#include "panel/model/places.h"
#include "panel/window_fixture.h"

namespace vitrell::panel {
namespace {

class WindowRunTest : public WindowTest {
 protected:
  // The program stands elsewhere than beside this test.
  WindowRunTest() {
    qputenv("PATH",
            QByteArray(fs::path(VITRELL_TOOL_PATH).parent_path().c_str()) + ":" + qgetenv("PATH"));
    EXPECT_EQ(FindTool(), fs::path(VITRELL_TOOL_PATH));
  }
  std::unique_ptr<MainWindow> MakeWindowWithEffect() const {
    return std::make_unique<MainWindow>(
        WindowOrder{module_, VITRELL_MODULE_PATH, folder_ / "sessions", VITRELL_PRESET_FOLDER});
  }
  void TriggerAndChoose(const char* action, const fs::path& file) {
    InDialog<QFileDialog>([&](QFileDialog& dialog) { Choose(dialog, file); });
    ActionOf(action)->trigger();
  }
};

TEST_F(WindowRunTest, RendersTheClipThatIsOpenAndAsksBeforeFramesAreReplaced) {
  window_ = MakeWindowWithEffect();
  window_->show();
  for (const char* name : {"plate.1.png", "plate.2.png"}) {
    media::WritePictureFile(folder_ / name,
                            media::NoisePicture(96, 54, 3, OIIO::TypeDesc::UINT8, 5));
  }
  window_->Open(folder_ / "plate.#.png");
  ASSERT_TRUE(WaitUntil([this] { return window_->Work().Shown() != nullptr; }));
  const auto* const bar = window_->findChild<QProgressBar*>();
  EXPECT_FALSE(bar->isVisible());
  TriggerAndChoose("Render to File", folder_ / "out.#.png");
  EXPECT_TRUE(bar->isVisible());
  ASSERT_TRUE(WaitUntil([this] { return !Message().empty(); }));
  EXPECT_TRUE(fs::exists(folder_ / "out.2.png")) << Message();
  EXPECT_EQ(bar->value(), 2);
  EXPECT_EQ(bar->maximum(), 2);
  EXPECT_FALSE(bar->isVisible());

  fs::remove(folder_ / "out.2.png");
  const auto renderAgain = [this](QMessageBox::StandardButton answer) {
    window_->Messages().hide();
    InDialog<QFileDialog>([&](QFileDialog& dialog) {
      InDialog<QMessageBox>([&](QMessageBox& box) { box.button(answer)->click(); });
      Choose(dialog, folder_ / "out.#.png");
    });
    ActionOf("Render to File")->trigger();
  };
  renderAgain(QMessageBox::No);
  EXPECT_FALSE(bar->isVisible());
  renderAgain(QMessageBox::Yes);
  ASSERT_TRUE(WaitUntil([this] { return !Message().empty(); }));
  EXPECT_TRUE(fs::exists(folder_ / "out.2.png")) << Message();
}

}  // namespace
}  // namespace vitrell::panel
