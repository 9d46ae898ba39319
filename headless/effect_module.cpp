// Loads effect modules.
#include "headless/effect_module.h"

#include <system_error>
#include <utility>

#include "headless/host_error.h"
#include "headless/platform.h"

namespace vitrell::headless {
EffectModule::EffectModule(const std::filesystem::path& path) : name_(path.string()) {
  std::error_code ignored;
  if (!std::filesystem::exists(path, ignored)) {
    throw HostError("There is no effect module at " + name_ +
                    "; build the effect or name its module with --effect.");
  }
  std::string message;
  library_ = OpenLibrary(path, &message);
  if (library_ == nullptr) {
    throw HostError("The effect module " + name_ + " cannot be loaded: " + message +
                    "; use a module that was built for this machine.");
  }
  entryPoint_ = reinterpret_cast<PF_EntryPoint>(FindSymbol(library_, kEntryPointName));
  if (entryPoint_ == nullptr) {
    CloseLibrary(library_);
    throw HostError("The file " + name_ + " is no effect module: it exports no function " +
                    kEntryPointName + "; name an effect module instead.");
  }
}

EffectModule::EffectModule(PF_EntryPoint entryPoint, std::string name)
    : entryPoint_(entryPoint), name_(std::move(name)) {}

EffectModule::~EffectModule() {
  if (library_ != nullptr) CloseLibrary(library_);
}

}  // namespace vitrell::headless
