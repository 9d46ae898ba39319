// A built frei0r module, opened and called as hosts do.
#ifndef VITRELL_TESTS_FREI0R_LOADED_MODULE_H_
#define VITRELL_TESTS_FREI0R_LOADED_MODULE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "frei0r/interface.h"

namespace vitrell::frei0r {

using Frame = std::vector<std::uint32_t>;

class LoadedModule {
 public:
  // Throws std::runtime_error when the file cannot be opened or lacks one of the functions that
  // every module has.
  explicit LoadedModule(const std::string& path);
  ~LoadedModule();
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  // -1 for an unknown name.
  int IndexOf(const std::string& name) const;
  void SetNumber(Instance instance, const std::string& name, double value) const;
  double GetNumber(Instance instance, const std::string& name) const;

  InitFunction* init = nullptr;
  DeinitFunction* deinit = nullptr;
  GetModuleInfoFunction<ModuleInfo>* getModuleInfo = nullptr;
  GetParameterInfoFunction<ParameterInfo>* getParameterInfo = nullptr;
  ConstructFunction* construct = nullptr;
  DestructFunction* destruct = nullptr;
  ParameterFunction* setParameter = nullptr;
  ParameterFunction* getParameter = nullptr;
  FilterFunction* filter = nullptr;  // null in a mixer
  MixerFunction* mixer = nullptr;    // null in a filter

 private:
  void* library_ = nullptr;
};

}  // namespace vitrell::frei0r

#endif  // VITRELL_TESTS_FREI0R_LOADED_MODULE_H_
