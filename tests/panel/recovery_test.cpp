// What a program that was killed leaves behind, and what one that was closed does not.
#include "panel/model/recovery.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <memory>

#include "panel/random_look.h"
#include "panel/test_picture.h"

namespace vitrell::panel {
namespace {

namespace fs = std::filesystem;

class RecoveryTest : public testing::Test {
 protected:
  ~RecoveryTest() override { fs::remove_all(folder_); }

  void Change(Document& document, double amount) {
    document.SetValue(PositionOf(document.Panel(), "fast-blur.amount"), amount, EditPhase::kDone);
  }
  double Amount(const Document& document) const {
    return std::get<double>(document.ValueOf(PositionOf(document.Panel(), "fast-blur.amount")));
  }

  fs::path folder_ = fs::temp_directory_path() / ("vitrell-recovery-" + std::to_string(::getpid()));
  std::shared_ptr<const headless::EffectModule> module_ =
      std::make_shared<const headless::EffectModule>(fs::path(VITRELL_MODULE_PATH));
  Document document_{module_};
};

TEST_F(RecoveryTest, AKilledProgramLeavesItsLastState) {
  const pid_t child = ::fork();
  if (child == 0) {
    Recovery recovery(document_, folder_);
    recovery.SetSource("/pictures/street.png");
    Change(document_, 64.0);
    recovery.WriteNow();
    ::raise(SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  const auto lost = Recovery::FindLost(folder_);
  ASSERT_TRUE(lost);
  EXPECT_EQ(lost->source, "/pictures/street.png");
  Document restored(module_);
  restored.TakeCopy(lost->preset);
  EXPECT_EQ(Amount(restored), 64.0);
  EXPECT_TRUE(restored.IsChanged());
  EXPECT_TRUE(restored.PresetFile().empty());
  Recovery::Drop(*lost);
  EXPECT_FALSE(Recovery::FindLost(folder_));
}

TEST_F(RecoveryTest, ChangesAreWrittenAMomentLater) {
  const Recovery recovery(document_, folder_);
  const auto presets = [this] {
    int count = 0;
    for (const auto& file : fs::directory_iterator(folder_)) {
      if (file.path().extension() == ".json") ++count;
    }
    return count;
  };
  Change(document_, 12.0);
  EXPECT_EQ(presets(), 0);
  EXPECT_TRUE(WaitUntil([&] { return presets() == 1; }));
}

TEST_F(RecoveryTest, ARunningProgramIsNotOfferedAndAClosedOneLeavesNothing) {
  {
    Recovery recovery(document_, folder_);
    Change(document_, 12.0);
    recovery.WriteNow();
    EXPECT_FALSE(Recovery::FindLost(folder_));
  }
  EXPECT_TRUE(fs::is_empty(folder_));
}

}  // namespace
}  // namespace vitrell::panel
