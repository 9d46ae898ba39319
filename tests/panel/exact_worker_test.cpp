// The thread of exact frames yields to the rest of the program.
#include "panel/model/exact_worker.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "headless/fakes/fake_effect.h"
#include "panel/test_picture.h"

namespace vitrell::panel {
namespace {

namespace fakes = headless::fakes;

constexpr int kMostYielding = 19;

int NicenessHere() { return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid())); }

// Renders once from a thread of this niceness; the niceness of the thread that rendered.
int NicenessOfRender(int niceness) {
  static std::atomic<int> seen;
  fakes::SetBehaviours({{PF_Cmd_RENDER, [](const fakes::Command&) -> PF_Err {
                           seen = NicenessHere();
                           return PF_Err_NONE;
                         }}});
  std::thread program([niceness] {
    ASSERT_EQ(::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), niceness), 0);
    const headless::EffectHost host(fakes::Module());
    const look::Panel panel = look::MakePanel(host.Parameters());
    const auto source = std::make_shared<NoiseSource>(32, 18, false);
    ExactWorker::Order order{{source, 0, look::Settings(panel)}, {}, "key"};
    order.answer.frame = source->Read(0);
    std::atomic<bool> done = false;
    ExactWorker worker(fakes::Module(), std::make_shared<SmallerFrames>(),
                       [&done](const ExactWorker::Order&) {
                         done = true;
                         done.notify_one();
                       });
    worker.Put(std::move(order));
    done.wait(false);
  });
  program.join();
  return seen;
}

TEST(ExactWorkerTest, YieldsToTheProgramHoweverMuchThatYieldsItself) {
  const int own = NicenessHere();
  EXPECT_GT(NicenessOfRender(own), own);
  const int more = std::min(own + 7, kMostYielding - 1);
  EXPECT_GT(NicenessOfRender(more), more);
}

}  // namespace
}  // namespace vitrell::panel
