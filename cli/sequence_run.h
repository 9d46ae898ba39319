// Hands the frames of a sequence to workers and collects what they say.
#ifndef VITRELL_CLI_SEQUENCE_RUN_H_
#define VITRELL_CLI_SEQUENCE_RUN_H_

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "cli/arguments.h"
#include "cli/frame_job.h"
#include "cli/processor_budget.h"
#include "cli/report.h"
#include "cli/sequence_plan.h"
#include "cli/sequence_progress.h"
#include "cli/sequence_tally.h"
#include "cli/worker_pool.h"

namespace vitrell::cli {

class SequenceRun {
 public:
  // All of these must outlive it. `layer` is the name of the custom layer's sequence, or of its
  // file, or empty.
  SequenceRun(const RenderArguments& arguments, const std::string& layer, SequencePlan& plan,
              WorkerPool& pool, SequenceProgress& progress, SequenceTally& tally)
      : arguments_(arguments),
        layer_(layer),
        plan_(plan),
        pool_(pool),
        progress_(progress),
        tally_(tally),
        budget_(arguments.processors) {}

  // Until all frames are done, or one failed and nobody wants to keep going, or a signal came;
  // then waits for those that are being rendered. Throws Failure only where no worker can start.
  void Run();

  // Of the first frame that was rendered; 0 for none.
  int Width() const { return width_; }

 private:
  void HandOut();
  // Whether the processors that may be used leave room for more work.
  bool HasProcessors();
  void Take(const WorkerPool::Result& result);
  FrameAnswer AnswerOf(const WorkerPool::Result& result, const FrameJob& job) const;
  void TellFailure(const FrameAnswer& answer);
  void TellSizes(const FrameAnswer& answer);
  void TellNotes(const std::vector<Note>& notes);

  const RenderArguments& arguments_;
  const std::string& layer_;
  SequencePlan& plan_;
  WorkerPool& pool_;
  SequenceProgress& progress_;
  SequenceTally& tally_;
  std::map<int, FrameJob> jobs_;  // of the workers
  ProcessorBudget budget_;
  StepClock clock_;
  bool stopping_ = false;
  int signals_ = 0;
  int width_ = 0;
  int height_ = 0;
  int bits_ = 0;
  bool sizesDiffer_ = false;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_SEQUENCE_RUN_H_
