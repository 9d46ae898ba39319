// What a program that was killed leaves behind, and what one that was closed does not.
#include "panel/model/recovery.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QSemaphore>
#include <QTest>
#include <QThreadPool>
#include <csignal>
#include <memory>
#include <optional>

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

  std::optional<fs::path> FirstPreset() const {
    for (const auto& file : fs::directory_iterator(folder_)) {
      if (file.path().extension() == ".json") return file.path();
    }
    return {};
  }
  bool HasPreset() const { return FirstPreset().has_value(); }

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
  Change(document_, 12.0);
  EXPECT_FALSE(HasPreset());
  EXPECT_TRUE(WaitUntil([this] { return HasPreset(); }));
  // And once more.
  const fs::path preset = *FirstPreset();
  const auto written = [&] {
    Document copy(module_);
    copy.TakeCopy(preset);
    return Amount(copy);
  };
  EXPECT_EQ(written(), 12.0);
  Change(document_, 13.0);
  EXPECT_TRUE(WaitUntil([&] { return written() == 13.0; }));
}

// All that writes aside is held up, as by a disk that is busy.
TEST_F(RecoveryTest, NobodyWaitsForTheDisk) {
  QThreadPool& pool = *QThreadPool::globalInstance();
  const int threads = pool.maxThreadCount();
  pool.setMaxThreadCount(1);
  QSemaphore disk;
  pool.start([&disk] { disk.acquire(); });
  const Recovery recovery(document_, folder_);
  Change(document_, 12.0);
  QTest::qWait(2 * Recovery::kDelayMilliseconds);
  EXPECT_FALSE(HasPreset());
  disk.release();
  EXPECT_TRUE(WaitUntil([this] { return HasPreset(); }));
  pool.setMaxThreadCount(threads);
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
