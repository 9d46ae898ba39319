// The filter: one input, every control but the layer.
#include "frei0r/lens_instance.h"
#include "frei0r/module.h"

namespace vitrell::frei0r {

const ModuleKind kModuleKind = {
    .name = "Vitrell", .type = kFilterModule, .explanation = "A lens held in front of the picture"};

void f0r_update(Instance instance, double /*seconds*/, Pixels frame, std::uint32_t* result) {
  static_cast<LensInstance*>(instance)->Render(frame, nullptr, result);
}

}  // namespace vitrell::frei0r
