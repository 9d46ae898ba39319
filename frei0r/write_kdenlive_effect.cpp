// `write_kdenlive_effect FILE`: writes Kdenlive's description of the filter, for the package.
#include <cstdio>
#include <exception>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "frei0r/kdenlive_effect.h"
#include "frei0r/lens_instance.h"
#include "host/host_api.h"

extern "C" PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                 PF_ParamDef* params[], PF_LayerDef* output, void* extra);

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "Usage: write_kdenlive_effect FILE\n");
    return 2;
  }
  try {
    const vitrell::frei0r::Lens lens(
        std::make_shared<const vitrell::headless::EffectModule>(&EntryPointFunc, "Vitrell"));
    std::ofstream file(argv[1], std::ios::binary);
    file << vitrell::frei0r::KdenliveEffect(lens.panel) << std::flush;
    if (!file) throw std::runtime_error("The file cannot be written.");
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", argv[1], error.what());
    return 1;
  }
}
