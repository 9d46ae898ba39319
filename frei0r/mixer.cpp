// The mixer: its second input is the custom lens layer.
#include "frei0r/lens_instance.h"
#include "frei0r/module.h"

namespace vitrell::frei0r {

const ModuleKind kModuleKind = {
    .name = "Vitrell Custom",
    .type = kMixerModule,
    .explanation = "A lens held in front of the first picture; the second one is its shape"};

void f0r_update2(Instance instance, double /*seconds*/, Pixels frame, Pixels second,
                 Pixels /*third*/, std::uint32_t* result) {
  static_cast<LensInstance*>(instance)->Render(frame, second, result);
}

}  // namespace vitrell::frei0r
