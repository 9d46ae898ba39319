// The functions that filter and mixer have in common.
#include "frei0r/module.h"

#include <cstdio>
#include <exception>
#include <limits>
#include <memory>
#include <vector>

#include "frei0r/lens_instance.h"
#include "headless/host_error.h"
#include "host/host_api.h"

// The effect is linked in; this is all that is known of it.
extern "C" PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                 PF_ParamDef* params[], PF_LayerDef* output, void* extra);

namespace vitrell::frei0r {
namespace {

constexpr const char* kAuthor = "Vitrell";

// Set up at the first use, by whichever thread comes first.
const Lens& TheLens() {
  static const Lens lens(
      std::make_shared<const headless::EffectModule>(&EntryPointFunc, "Vitrell"));
  return lens;
}

void Tell(const char* what) noexcept { std::fprintf(stderr, "vitrell: %s\n", what); }

// Calls the function, whose exceptions are told and go no further.
template <typename Function>
void Guarded(const Function& function) noexcept {
  try {
    function();
  } catch (const std::exception& error) {
    Tell(error.what());
  } catch (...) {
    Tell("an unexpected error");
  }
}

int CheckedSize(unsigned int size) {
  if (size == 0 || size > static_cast<unsigned int>(std::numeric_limits<int>::max())) {
    throw headless::HostError("A frame of this size cannot be rendered.");
  }
  return static_cast<int>(size);
}

int TypeOf(look::Frei0rKind kind) {
  switch (kind) {
    case look::Frei0rKind::kSwitch:
      return kSwitchParameter;
    case look::Frei0rKind::kColour:
      return kColourParameter;
    default:
      return kNumberParameter;
  }
}

LensInstance* InstanceOf(Instance instance) { return static_cast<LensInstance*>(instance); }

}  // namespace

int f0r_init() {
  int usable = 0;
  Guarded([&] {
    (void)TheLens();
    usable = 1;
  });
  return usable;
}

void f0r_deinit() {}

void f0r_get_plugin_info(ModuleInfo* info) {
  *info = {.name = kModuleKind.name,
           .author = kAuthor,
           .type = kModuleKind.type,
           .colourModel = kRgba,
           .interfaceVersion = kInterfaceVersion,
           .majorVersion = VITRELL_VERSION_MAJOR,
           .minorVersion = VITRELL_VERSION_MINOR,
           .parameterCount = 0,
           .explanation = kModuleKind.explanation};
  Guarded([&] { info->parameterCount = static_cast<int>(TheLens().parameters.size()); });
}

void f0r_get_param_info(ParameterInfo* info, int index) {
  *info = {.name = "", .type = kNumberParameter, .explanation = ""};
  Guarded([&] {
    const std::vector<look::Frei0rParameter>& all = TheLens().parameters;
    if (index < 0 || index >= static_cast<int>(all.size())) return;
    const look::Frei0rParameter& parameter = all[static_cast<std::size_t>(index)];
    *info = {.name = parameter.name.c_str(),
             .type = TypeOf(parameter.kind),
             .explanation = parameter.explanation.c_str()};
  });
}

Instance f0r_construct(unsigned int width, unsigned int height) {
  std::unique_ptr<LensInstance> instance;
  Guarded([&] {
    instance = std::make_unique<LensInstance>(TheLens(), CheckedSize(width), CheckedSize(height),
                                              kModuleKind.type == kMixerModule);
  });
  return instance.release();
}

void f0r_destruct(Instance instance) { delete InstanceOf(instance); }

void f0r_set_param_value(Instance instance, void* value, int index) {
  Guarded([&] { InstanceOf(instance)->Set(index, value); });
}

void f0r_get_param_value(Instance instance, void* value, int index) {
  Guarded([&] { InstanceOf(instance)->Get(index, value); });
}

}  // namespace vitrell::frei0r
