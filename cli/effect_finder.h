// Where the effect module lies.
#ifndef VITRELL_CLI_EFFECT_FINDER_H_
#define VITRELL_CLI_EFFECT_FINDER_H_

#include <filesystem>
#include <memory>

#include "headless/effect_host.h"

namespace vitrell::cli {

// The module the user named or, with an empty name, the first that exists beside the executable,
// in ../lib/vitrell (installed) and in ../src (build folder). Throws Failure listing these places.
std::filesystem::path FindEffect(const std::filesystem::path& named);

// The set-up effect. Throws Failure naming the module, the cause and the remedy.
std::unique_ptr<headless::EffectHost> OpenEffect(const std::filesystem::path& named);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_EFFECT_FINDER_H_
