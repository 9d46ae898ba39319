// Opening a module with dlopen.
#include "frei0r/loaded_module.h"

#include <dlfcn.h>

#include <stdexcept>

namespace vitrell::frei0r {
namespace {

template <typename Function>
void Look(void* library, const char* name, Function*& function) {
  function = reinterpret_cast<Function*>(::dlsym(library, name));
}

template <typename Function>
void Need(void* library, const char* name, Function*& function) {
  Look(library, name, function);
  if (function == nullptr) throw std::runtime_error(std::string("no function ") + name);
}

}  // namespace

LoadedModule::LoadedModule(const std::string& path)
    : library_(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (library_ == nullptr) throw std::runtime_error(::dlerror());
  Need(library_, "f0r_init", init);
  Need(library_, "f0r_deinit", deinit);
  Need(library_, "f0r_get_plugin_info", getModuleInfo);
  Need(library_, "f0r_get_param_info", getParameterInfo);
  Need(library_, "f0r_construct", construct);
  Need(library_, "f0r_destruct", destruct);
  Need(library_, "f0r_set_param_value", setParameter);
  Need(library_, "f0r_get_param_value", getParameter);
  Look(library_, "f0r_update", filter);
  Look(library_, "f0r_update2", mixer);
}

LoadedModule::~LoadedModule() { ::dlclose(library_); }

int LoadedModule::IndexOf(const std::string& name) const {
  ModuleInfo module{};
  getModuleInfo(&module);
  for (int i = 0; i < module.parameterCount; ++i) {
    ParameterInfo parameter{};
    getParameterInfo(&parameter, i);
    if (parameter.name == name) return i;
  }
  return -1;
}

void LoadedModule::SetNumber(Instance instance, const std::string& name, double value) const {
  setParameter(instance, &value, IndexOf(name));
}

double LoadedModule::GetNumber(Instance instance, const std::string& name) const {
  double value = -9;
  getParameter(instance, &value, IndexOf(name));
  return value;
}

}  // namespace vitrell::frei0r
