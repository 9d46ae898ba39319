// Rendering from the window's menu, by the built command line.
#include <gtest/gtest.h>

#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <utility>
#include <vector>

#include "panel/hand.h"
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

// Of a render that takes seconds.
class WindowCancelTest : public WindowRunTest {
 protected:
  void StartLongRender() {
    window_ = MakeWindowWithEffect();
    window_->show();
    const fs::path large = folder_ / "large.png";
    media::WritePictureFile(large, media::NoisePicture(960, 540, 3, OIIO::TypeDesc::UINT8, 5));
    window_->Open(large);
    ASSERT_TRUE(WaitUntil([this] { return window_->Work().Shown() != nullptr; }));
    Edited().SetValue(At("realistic-blur.visible"), true, EditPhase::kDone);
    Edited().SetValue(At("realistic-blur.amount"), 400.0, EditPhase::kDone);
    window_->RenderTo(output_);
    EXPECT_TRUE(Bar()->isVisible());
  }
  QProgressBar* Bar() { return window_->findChild<QProgressBar*>(); }
  void CloseAnswering(QMessageBox::StandardButton answer) {
    bool asked = false;
    InDialog<QMessageBox>([&](QMessageBox& box) {
      if (!box.text().contains("still being rendered"))
        return box.button(QMessageBox::Discard)->click();
      asked = true;
      if (answer == QMessageBox::Yes) {
        InDialog<QMessageBox>(
            [](QMessageBox& next) { next.button(QMessageBox::Discard)->click(); });
      }
      box.button(answer)->click();
    });
    window_->close();
    EXPECT_TRUE(asked);
  }

  fs::path output_ = folder_ / "out.png";
};

TEST_F(WindowCancelTest, TheButtonCancelsAndLeavesNoFile) {
  StartLongRender();
  for (QPushButton* const button : window_->findChildren<QPushButton*>()) {
    if (button->accessibleName() == "Cancel the render") button->click();
  }
  ASSERT_TRUE(WaitUntil([this] { return !Message().empty(); }));
  EXPECT_EQ(Message().rfind("Cancelled.", 0), 0U) << Message();
  EXPECT_FALSE(Bar()->isVisible());
  EXPECT_FALSE(fs::exists(output_));
}

TEST_F(WindowCancelTest, ASecondRenderIsRefusedMeanwhile) {
  StartLongRender();
  window_->RenderTo(folder_ / "second.png");
  EXPECT_NE(Message().find("Another render is still running"), std::string::npos) << Message();
  EXPECT_TRUE(Bar()->isVisible());
}

TEST_F(WindowCancelTest, ClosingAsksAndCancels) {
  StartLongRender();
  CloseAnswering(QMessageBox::No);
  EXPECT_TRUE(window_->isVisible());
  EXPECT_TRUE(Bar()->isVisible());
  CloseAnswering(QMessageBox::Yes);
  EXPECT_FALSE(window_->isVisible());
  window_.reset();
  EXPECT_FALSE(fs::exists(output_));
}

// Of a file with 16 bits: its own numbers, and those of the file that is rendered from it.
TEST_F(WindowRunTest, TheNumbersUnderThePointerAreThoseOfBothFiles) {
  window_ = MakeWindowWithEffect();
  window_->show();
  const fs::path deep = folder_ / "deep.png";
  media::WritePictureFile(deep, media::NoisePicture(96, 54, 3, OIIO::TypeDesc::UINT16, 5));
  bool exact = false;
  QObject::connect(&window_->Work(), &Workspace::Answered,
                   [&](const RenderAnswer& answer) { exact = answer.exact; });
  window_->Open(deep);
  ASSERT_TRUE(WaitUntil([&] { return exact; }));
  exact = false;
  Edited().SetValue(At("lightness.amount"), 37.0, EditPhase::kDone);
  ASSERT_TRUE(WaitUntil([&] { return exact; }));
  window_->RenderTo(folder_ / "out.png");
  ASSERT_TRUE(WaitUntil([this] { return !Message().empty(); }));
  const auto numbersAt = [](const fs::path& file, int x, int y) {
    auto input = OIIO::ImageInput::open(file.string());
    std::vector<uint16_t> samples(std::size_t{3} * 96 * 54);
    EXPECT_TRUE(input->read_image(0, 0, 0, 3, OIIO::TypeDesc::UINT16, samples.data()));
    const std::size_t at = 3 * static_cast<std::size_t>(y * 96 + x);
    return QString("R %1  G %2  B %3").arg(samples[at]).arg(samples[at + 1]).arg(samples[at + 2]);
  };
  PictureView& view = window_->Work().View();
  QTest::keyClick(&view, Qt::Key_H);
  for (const auto& [x, y] : {std::pair(48, 30), std::pair(2, 50)}) {
    MoveMouse(&view, view.Transform().ToView().map(QPointF(x + 0.5, y + 0.5)), Qt::NoButton);
    const QString wanted = QString("%1, %2   ").arg(x).arg(y) + numbersAt(deep, x, y) +
                           QString("   \u2192   ") + numbersAt(folder_ / "out.png", x, y);
    QStringList shown;
    for (const QLabel* label : view.findChildren<QLabel*>()) shown << label->text();
    EXPECT_TRUE(shown.contains(wanted)) << wanted.toStdString() << "\ninstead of\n"
                                        << shown.join('\n').toStdString();
  }
}

}  // namespace
}  // namespace vitrell::panel
