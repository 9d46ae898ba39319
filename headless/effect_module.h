// A loaded effect module, reached through its one exported function.
#ifndef VITRELL_HEADLESS_EFFECT_MODULE_H_
#define VITRELL_HEADLESS_EFFECT_MODULE_H_

#include <filesystem>
#include <string>

#include "host/host_api.h"

namespace vitrell::headless {

// Keeps a module loaded during the object's lifetime. Any number of hosts share it through a
// std::shared_ptr; this class does not serialise their calls of the entry point.
class EffectModule {
 public:
  // Name of the function that every module exports.
  static constexpr const char* kEntryPointName = "EntryPointFunc";

  // Throws HostError when the file is missing, cannot be loaded or exports no entry point.
  explicit EffectModule(const std::filesystem::path& path);

  // An effect linked into the calling program; nothing is loaded. `name` appears in messages.
  EffectModule(PF_EntryPoint entryPoint, std::string name);

  ~EffectModule();
  EffectModule(const EffectModule&) = delete;
  EffectModule& operator=(const EffectModule&) = delete;

  PF_EntryPoint EntryPoint() const { return entryPoint_; }
  const std::string& Name() const { return name_; }

 private:
  void* library_ = nullptr;
  PF_EntryPoint entryPoint_ = nullptr;
  std::string name_;
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_EFFECT_MODULE_H_
