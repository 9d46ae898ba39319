// The state of one host while it runs an effect.
#ifndef VITRELL_HEADLESS_HOST_STATE_H_
#define VITRELL_HEADLESS_HOST_STATE_H_

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "headless/call_recorder.h"
#include "headless/ledgers.h"
#include "headless/parameter_store.h"
#include "headless/pixel_transfer.h"
#include "headless/render.h"
#include "headless/thread_pool.h"
#include "headless/world_registry.h"
#include "headless/world_spares.h"
#include "host/host_api.h"

namespace vitrell::headless {

// Callbacks reach it as their thread's current host, see CurrentHost.
class HostState {
 public:
  explicit HostState(PF_EntryPoint entryPoint);
  HostState(const HostState&) = delete;
  HostState& operator=(const HostState&) = delete;

  // Sends one command and then checks what the effect did with the host's records and services. An
  // exception that escapes the entry point counts as PF_Err_INTERNAL_STRUCT_DAMAGED.
  PF_Err Command(PF_Cmd cmd, PF_ParamDef* params[], PF_LayerDef* output, void* extra);
  // Records the complaint "During <command> the effect <what>."
  void Complain(const std::string& what);

  PF_ProgPtr EffectRef() { return reinterpret_cast<PF_ProgPtr>(this); }
  const RenderOptions& Options() const;
  int Threads() const;  // For iterate passes; at least 1.
  bool CancelRequested() const;
  // The true depth and geometry of the world that a record names. Empty, with a complaint that
  // names `call`, if the record has no pixels or disagrees with that world.
  std::optional<PixelView> ViewOf(const PF_LayerDef* world, const char* call);

  PF_InData in{};
  PF_OutData out{};
  CallRecorder recorder;
  WorldRegistry worlds;
  WorldSpares spares;
  SuiteLedger suites;
  CheckoutLedger checkouts;
  BlockLedger blocks;
  ParameterStore parameters;
  ThreadPool pool;

  // Those of the frame being rendered; null, false and 0 between frames.
  const RenderOptions* options = nullptr;
  const WorldBuffer* customLayer = nullptr;
  bool renderDeep = false;
  int passes = 0;

  PF_Cmd command = -1;                    // The command being run.
  std::vector<PF_ParamDef> frameRecords;  // The copies that the effect gets.
  std::vector<std::string> complaints;

 private:
  PF_Err CallEntryPoint(PF_Cmd cmd, PF_ParamDef* params[], PF_LayerDef* output, void* extra);
  void JudgeOutstanding();
  void JudgeOutput(const PF_OutData& before);

  PF_EntryPoint entryPoint_;
  PF_UtilCallbacks utils_{};
  std::mutex complaintsMutex_;
};

// "RENDER" for 11.
std::string CommandName(PF_Cmd cmd);

// The host that an effect_ref refers to. Null if the thread works for no host or the reference is
// wrong; the latter is a complaint that names `call`.
HostState* HostOf(PF_ProgPtr effectRef, const char* call);

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_HOST_STATE_H_
