// What a frei0r module of the effect exports, apart from the function that renders, and what its
// kind tells of itself.
#ifndef VITRELL_FREI0R_MODULE_H_
#define VITRELL_FREI0R_MODULE_H_

#include "frei0r/interface.h"

#define VITRELL_FREI0R_EXPORT __attribute__((visibility("default")))

namespace vitrell::frei0r {

// Filter or mixer; each has its own source file.
struct ModuleKind {
  const char* name;
  ModuleType type;
  const char* explanation;
};
extern const ModuleKind kModuleKind;

// No exception leaves any of these.
extern "C" {
// 1 when the effect can be used, otherwise 0.
VITRELL_FREI0R_EXPORT InitFunction f0r_init;
VITRELL_FREI0R_EXPORT DeinitFunction f0r_deinit;
// May be called before f0r_init. What the records point to lives as long as the module is loaded.
VITRELL_FREI0R_EXPORT GetModuleInfoFunction<ModuleInfo> f0r_get_plugin_info;
VITRELL_FREI0R_EXPORT GetParameterInfoFunction<ParameterInfo> f0r_get_param_info;
// Null when the instance cannot be made, with the reason on standard error.
VITRELL_FREI0R_EXPORT ConstructFunction f0r_construct;
VITRELL_FREI0R_EXPORT DestructFunction f0r_destruct;
VITRELL_FREI0R_EXPORT ParameterFunction f0r_set_param_value;
VITRELL_FREI0R_EXPORT ParameterFunction f0r_get_param_value;
// A filter exports the first of these, a mixer the second.
VITRELL_FREI0R_EXPORT FilterFunction f0r_update;
VITRELL_FREI0R_EXPORT MixerFunction f0r_update2;
}

}  // namespace vitrell::frei0r

#endif  // VITRELL_FREI0R_MODULE_H_
