// The commands of `vitrell`. They print to standard output and throw Failure.
#ifndef VITRELL_CLI_COMMANDS_H_
#define VITRELL_CLI_COMMANDS_H_

#include <functional>

#include "cli/arguments.h"
#include "look/settings.h"

namespace vitrell::cli {

// Runs `work` with exit code 1 for temporary failures, too: no scheduler retries a single render.
void OnlyOnce(const std::function<void()>& work);

void RunRender(const RenderArguments& arguments);
// The same for the frames of a sequence. `threads` must already be a number that can be started.
void RunSequence(const RenderArguments& arguments);
// Reports which frames of a sequence are missing, torn or stale.
void RunCheck(const CheckArguments& arguments);
void RunParams(const ParamsArguments& arguments);
void RunKeys(const KeysArguments& arguments);
void RunAbout(const EffectArguments& arguments);
// What is read and written, and what each format keeps.
void RunFormats();

// Defaults, then the presets in order, then --keys, then --set.
look::Settings MakeSettings(const look::Panel& panel, const EffectArguments& arguments);

// What turns the times of the settings' keys into frames. Throws Failure if the length is needed
// and not known.
look::TimeBase TimeBaseOf(const look::Settings& settings, const EffectArguments& arguments);

// The values at the frame of --at.
look::Settings SettingsAt(const look::Settings& settings, const EffectArguments& arguments);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_COMMANDS_H_
