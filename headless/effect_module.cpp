// Loads effect modules.
#include "headless/effect_module.h"

#include <dlfcn.h>

#include <system_error>
#include <utility>

#include "headless/host_error.h"

namespace vitrell::headless {
namespace {

// dlopen searches the system's directories for a bare file name; a path with a slash is used as is.
std::string LoadablePath(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.string() : (std::filesystem::path(".") / path).string();
}

std::string LastLoaderMessage() {
  const char* message = dlerror();
  return message != nullptr ? message : "the loader gives no reason";
}

}  // namespace

EffectModule::EffectModule(const std::filesystem::path& path) : name_(path.string()) {
  std::error_code ignored;
  if (!std::filesystem::exists(path, ignored)) {
    throw HostError("There is no effect module at " + name_ +
                    "; build the effect or name its module with --effect.");
  }
  library_ = dlopen(LoadablePath(path).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library_ == nullptr) {
    throw HostError("The effect module " + name_ + " cannot be loaded: " + LastLoaderMessage() +
                    "; use a module that was built for this machine.");
  }
  entryPoint_ = reinterpret_cast<PF_EntryPoint>(dlsym(library_, kEntryPointName));
  if (entryPoint_ == nullptr) {
    dlclose(library_);
    throw HostError("The file " + name_ + " is no effect module: it exports no function " +
                    kEntryPointName + "; name an effect module instead.");
  }
}

EffectModule::EffectModule(PF_EntryPoint entryPoint, std::string name)
    : entryPoint_(entryPoint), name_(std::move(name)) {}

EffectModule::~EffectModule() {
  if (library_ != nullptr) dlclose(library_);
}

}  // namespace vitrell::headless
