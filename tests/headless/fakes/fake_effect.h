// An effect whose reaction to every command is scripted by the test that it is linked into.
#ifndef VITRELL_TESTS_HEADLESS_FAKES_FAKE_EFFECT_H_
#define VITRELL_TESTS_HEADLESS_FAKES_FAKE_EFFECT_H_

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "headless/effect_host.h"

namespace vitrell::headless::fakes {

// What the entry point was given.
struct Command {
  PF_InData* in;
  PF_OutData* out;
  PF_ParamDef** params;
  PF_LayerDef* output;
  void* extra;

  PF_ProgPtr Ref() const { return in->effect_ref; }
  PF_LayerDef& Input() const { return params[0]->u.ld; }
};

using Behaviour = std::function<PF_Err(const Command&)>;

// Replaces all behaviours. A command without one answers 0; PARAMS_SETUP without one registers a
// slider "Amount" (0..100, default 20), a point "Center", and a layer "Map", indices 1 to 3.
void SetBehaviours(std::map<PF_Cmd, Behaviour> behaviours);
// The commands received since SetBehaviours.
const std::vector<PF_Cmd>& Received();

std::shared_ptr<const EffectModule> Module();

// A record for add_param.
PF_ParamDef MakeRecord(PF_ParamType type, const std::string& name, A_long id);
PF_Err AddDefaultParameters(const Command& command);

// A host whose effect does `render` at RENDER.
std::unique_ptr<EffectHost> HostOf(Behaviour render);

// Acquires a suite; null when it is not there.
template <typename Suite>
const Suite* Acquire(const Command& command, const char* name, std::int32_t version) {
  const void* suite = nullptr;
  (void)command.in->pica_basicP->AcquireSuite(name, version, &suite);
  return static_cast<const Suite*>(suite);
}

}  // namespace vitrell::headless::fakes

#endif  // VITRELL_TESTS_HEADLESS_FAKES_FAKE_EFFECT_H_
