// An effect module in memory, reached through its one exported function.
#ifndef VITRELL_HEADLESS_EFFECT_MODULE_H_
#define VITRELL_HEADLESS_EFFECT_MODULE_H_

#include <filesystem>
#include <string>

#include "host/host_api.h"

namespace vitrell::headless {

// Loads a module for as long as the object lives. Shared by any number of hosts through a
// std::shared_ptr; entry point calls from several threads are the hosts' affair.
class EffectModule {
 public:
  // Name of the function that every module exports.
  static constexpr const char* kEntryPointName = "EntryPointFunc";

  // Throws HostError when the file is missing, cannot be loaded or exports no entry point.
  explicit EffectModule(const std::filesystem::path& path);

  // An effect that is linked into the calling program; nothing is loaded. `name` is for messages.
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
