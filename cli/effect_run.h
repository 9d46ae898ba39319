// One picture through the effect.
#ifndef VITRELL_CLI_EFFECT_RUN_H_
#define VITRELL_CLI_EFFECT_RUN_H_

#include <string>

#include "cli/arguments.h"
#include "cli/notes.h"
#include "cli/progress_bar.h"
#include "headless/effect_host.h"
#include "headless/world_buffer.h"
#include "look/settings.h"

namespace vitrell::cli {

// Renders with the arguments' threads, shows progress and notes the effect's misbehaviour. The
// objects given must outlive it.
class EffectRun {
 public:
  EffectRun(headless::EffectHost& host, const RenderArguments& arguments, ProgressBar& bar,
            Notes& notes)
      : host_(host), arguments_(arguments), bar_(bar), notes_(notes) {}

  // Counts the stages for the progress line, if it is shown. To be called before anything is read,
  // so that their number does not change halfway.
  void Foresee(const look::Settings& settings, bool hasLayer);

  // Whether the host does what costs as much as a stage (default: yes): it looks whether the effect
  // leaves its input and the layer as they are, and fills the worlds that the effect asks for, so
  // that pixels which are read before they are written show.
  void CheckThoroughly(bool check) { isThorough_ = check; }

  // The seconds that the effect took. `layer` may be null. Throws Failure, also when interrupted.
  double Render(const look::Settings& settings, const headless::WorldBuffer& picture,
                const headless::WorldBuffer* layer, headless::WorldBuffer& result);

  // Of the progress line: reading is the first and writing the last, known since Foresee.
  int Stages() const { return stages_; }

 private:
  [[noreturn]] void ThrowEffectFailure(const headless::RenderResult& rendered) const;

  headless::EffectHost& host_;
  const RenderArguments& arguments_;
  ProgressBar& bar_;
  Notes& notes_;
  int stages_ = 2;
  bool isThorough_ = true;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_EFFECT_RUN_H_
