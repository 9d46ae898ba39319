// How long a hand waits: from a change of a slider to the picture that shows it.
//
//   panel_answer_times [--width 1920] [--height 1080] [--changes 200] [--worst 0]
//
// Each slider of the effect is dragged from one end to the other over the default look, change by
// change, on a window that nobody sees. Every 20 changes the hand rests for so long that the exact
// frame is under way when it moves on. A change counts as answered once the view has painted it.
// Prints the table of docs/panel.md, and as many of the worst answers as wanted, with what they
// were; see scripts/bench-panel.sh.
#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTest>
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "panel/test_picture.h"
#include "panel/window/workspace.h"

namespace vitrell::panel {
namespace {

constexpr int kRestMilliseconds = 500;
// Rests within a drag: longer than what counts as one, shorter than the exact frame then takes.
constexpr int kChangesBetweenRests = 20;
constexpr int kShortRestMilliseconds = 190;

struct Wait {
  std::string slider;
  int change = 0;
  bool rested = false;
  double milliseconds = 0;  // until it was painted
  double asking = 0;        // milliseconds of it until the change was made and its frame asked for
  double rendering = 0;     // milliseconds of it
  double painting = 0;      // milliseconds of it
  double scale = 1;
  double scaleBefore = 1;
};

struct Times {
  double median = 0;
  double worst = 0;
  double smallestScale = 1;
};

// Noise is no harder for the effect than any other picture, and no easier.
class Hand {
 public:
  Hand(Workspace& work, int changes) : work_(work), changes_(changes) {
    QObject::connect(&work, &Workspace::Answered, [this](const RenderAnswer& answer) {
      const double delivered = Passed();
      work_.View().repaint();
      painting_ = Passed() - delivered;
      answer_ = answer;
      loop_.quit();
    });
    clock_.start();
  }

  // Looks at it for a moment, too.
  void WaitForExact() {
    while (!answer_.exact) loop_.exec();
    QTest::qWait(kRestMilliseconds);
  }

  Times Drag(int control) {
    const look::Control& slider =
        work_.Edited().Panel().controls[static_cast<std::size_t>(control)];
    const std::size_t before = waits_.size();
    for (int i = 0; i < changes_; ++i) {
      const double share = static_cast<double>(i) / std::max(1, changes_ - 1);
      const double value =
          slider.sliderMinimum + share * (slider.sliderMaximum - slider.sliderMinimum);
      if (look::Value(value) == work_.Edited().ValueOf(control)) continue;
      const bool rested = i > 0 && i % kChangesBetweenRests == 0;
      if (rested) QTest::qWait(kShortRestMilliseconds);
      Wait wait = {.slider = slider.name, .change = i, .rested = rested};
      wait.scaleBefore = answer_.scale;
      Change(control, value, wait);
      waits_.push_back(wait);
    }
    answer_.exact = false;
    work_.Controls().Edited(control, slider.defaultValue, EditPhase::kDone);
    WaitForExact();
    return TimesSince(before);
  }

  void PrintWorst(int count) {
    std::sort(waits_.begin(), waits_.end(),
              [](const Wait& a, const Wait& b) { return a.milliseconds > b.milliseconds; });
    waits_.resize(std::min(waits_.size(), static_cast<std::size_t>(std::max(0, count))));
    for (const Wait& wait : waits_) {
      std::printf(
          "%.1f ms: %s, change %d%s; asking %.1f, rendering %.1f, painting %.1f, on the way %.1f; "
          "%.0f %% after %.0f %%\n",
          wait.milliseconds, wait.slider.c_str(), wait.change, wait.rested ? " after a rest" : "",
          wait.asking, wait.rendering, wait.painting,
          wait.milliseconds - wait.asking - wait.rendering - wait.painting, wait.scale * 100,
          wait.scaleBefore * 100);
    }
  }

 private:
  // As the widget's signal makes it. Sleeps until the answer comes, as the program does: a wait
  // that looks again and again takes a processor from the renderer.
  void Change(int control, double value, Wait& wait) {
    const std::uint64_t before = answer_.request;
    clock_.start();
    work_.Controls().Edited(control, value, EditPhase::kDragging);
    wait.asking = Passed();
    while (answer_.request == before) loop_.exec();
    wait.milliseconds = Passed();
    wait.rendering = answer_.seconds * 1000;
    wait.painting = painting_;
    wait.scale = answer_.scale;
  }

  // Milliseconds since the change.
  double Passed() const { return static_cast<double>(clock_.nsecsElapsed()) / 1e6; }

  Times TimesSince(std::size_t first) const {
    Times times;
    std::vector<double> milliseconds;
    for (std::size_t i = first; i < waits_.size(); ++i) {
      milliseconds.push_back(waits_[i].milliseconds);
      times.smallestScale = std::min(times.smallestScale, waits_[i].scale);
    }
    std::sort(milliseconds.begin(), milliseconds.end());
    times.median = milliseconds[milliseconds.size() / 2];
    times.worst = milliseconds.back();
    return times;
  }

  Workspace& work_;
  int changes_;
  RenderAnswer answer_;
  QEventLoop loop_;
  QElapsedTimer clock_;
  double painting_ = 0;  // milliseconds of the last answer's
  std::vector<Wait> waits_;
};

void Measure(const QSize& size, int changes, int worst) {
  Workspace work(
      std::make_shared<const headless::EffectModule>(std::filesystem::path(VITRELL_MODULE_PATH)));
  work.View().resize(1280, 720);
  work.View().show();
  Hand hand(work, changes);
  const auto source = std::make_shared<NoiseSource>(size.width(), size.height(), false);
  work.Show(source, source->Read(0));
  hand.WaitForExact();
  std::printf("| Slider | Median ms | Worst ms | Smallest preview |\n|---|--:|--:|--:|\n");
  const std::vector<look::Control>& controls = work.Edited().Panel().controls;
  for (std::size_t i = 0; i < controls.size(); ++i) {
    if (controls[i].kind != look::ControlKind::kNumber) continue;
    const Times times = hand.Drag(static_cast<int>(i));
    std::printf("| %s | %.1f | %.1f | %.0f %% |\n", controls[i].name.c_str(), times.median,
                times.worst, times.smallestScale * 100);
    static_cast<void>(std::fflush(stdout));
  }
  hand.PrintWorst(worst);
}

}  // namespace
}  // namespace vitrell::panel

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  QCommandLineParser parser;
  const QCommandLineOption width("width", "", "pixels", "1920");
  const QCommandLineOption height("height", "", "pixels", "1080");
  const QCommandLineOption changes("changes", "", "number", "200");
  const QCommandLineOption worst("worst", "", "number", "0");
  parser.addOptions({width, height, changes, worst});
  parser.addHelpOption();
  parser.process(application);
  vitrell::panel::Measure({parser.value(width).toInt(), parser.value(height).toInt()},
                          parser.value(changes).toInt(), parser.value(worst).toInt());
  return 0;
}
