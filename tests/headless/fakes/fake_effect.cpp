// The entry point of the scripted effect.
#include "headless/fakes/fake_effect.h"

#include <cstring>
#include <mutex>
#include <utility>

namespace vitrell::headless::fakes {
namespace {

std::mutex g_mutex;
std::map<PF_Cmd, Behaviour> g_behaviours;
std::vector<PF_Cmd> g_received;

PF_Err EntryPoint(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef* params[],
                  PF_LayerDef* output, void* extra) {
  Behaviour behaviour;
  {
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_received.push_back(cmd);
    const auto found = g_behaviours.find(cmd);
    if (found != g_behaviours.end()) behaviour = found->second;
  }
  const Command command{in, out, params, output, extra};
  if (behaviour) return behaviour(command);
  return cmd == PF_Cmd_PARAMS_SETUP ? AddDefaultParameters(command) : PF_Err_NONE;
}

}  // namespace

void SetBehaviours(std::map<PF_Cmd, Behaviour> behaviours) {
  const std::lock_guard<std::mutex> lock(g_mutex);
  g_behaviours = std::move(behaviours);
  g_received.clear();
}

const std::vector<PF_Cmd>& Received() { return g_received; }

std::shared_ptr<const EffectModule> Module() {
  return std::make_shared<const EffectModule>(EntryPoint, "the fake effect");
}

PF_ParamDef MakeRecord(PF_ParamType type, const std::string& name, A_long id) {
  PF_ParamDef record{};
  record.param_type = type;
  record.uu.id = id;
  std::strncpy(record.name, name.c_str(), sizeof(record.name) - 1);
  return record;
}

PF_Err AddDefaultParameters(const Command& command) {
  PF_ParamDef amount = MakeRecord(PF_Param_FLOAT_SLIDER, "Amount", 1);
  amount.u.fs_d.valid_max = amount.u.fs_d.slider_max = 100;
  amount.u.fs_d.dephault = 20;
  PF_ParamDef center = MakeRecord(PF_Param_POINT, "Center", 2);
  center.u.td.x_dephault = center.u.td.y_dephault = 50 << 16;
  PF_ParamDef map = MakeRecord(PF_Param_LAYER, "Map", 3);
  for (PF_ParamDef* record : {&amount, &center, &map}) {
    const PF_Err error = command.in->inter.add_param(command.Ref(), -1, record);
    if (error != PF_Err_NONE) return error;
  }
  command.out->num_params = 4;
  return PF_Err_NONE;
}

std::unique_ptr<EffectHost> HostOf(Behaviour render) {
  SetBehaviours({{PF_Cmd_RENDER, std::move(render)}});
  return std::make_unique<EffectHost>(Module());
}

}  // namespace vitrell::headless::fakes
