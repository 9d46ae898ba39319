// Checks before a render begins.
#ifndef VITRELL_CLI_RENDER_CHECKS_H_
#define VITRELL_CLI_RENDER_CHECKS_H_

#include <string>

#include "cli/arguments.h"

namespace vitrell::cli {

// Throws Failure if standard input would be read twice. To be called before any of it is read.
void CheckStandardInput(const std::string& input, const EffectArguments& effect);

// The file of --save-preset, empty for none. Throws Failure.
void CheckPresetTarget(const std::string& target, bool force);

// Refuses files that are written and would replace one another or what is read (a preset may be
// updated in place), and targets that cannot be written. Throws Failure.
void CheckFiles(const RenderArguments& arguments, const std::string& layerPath);
// The same, but for whether OUTPUT is a picture that can be written.
void CheckNames(const RenderArguments& arguments, const std::string& layerPath);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_RENDER_CHECKS_H_
