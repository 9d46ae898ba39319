// Everything one host holds while an effect works for it.
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

// The host's callbacks find it as the current host of their thread, see CurrentHost.
class HostState {
 public:
  explicit HostState(PF_EntryPoint entryPoint);
  HostState(const HostState&) = delete;
  HostState& operator=(const HostState&) = delete;

  // Sends one command and judges what the effect did with the host's records and services. An
  // exception that leaves the entry point counts as PF_Err_INTERNAL_STRUCT_DAMAGED.
  PF_Err Command(PF_Cmd cmd, PF_ParamDef* params[], PF_LayerDef* output, void* extra);
  // Adds "During <command> the effect <what>."
  void Complain(const std::string& what);

  PF_ProgPtr EffectRef() { return reinterpret_cast<PF_ProgPtr>(this); }
  const RenderOptions& Options() const;
  int Threads() const;  // For passes, at least 1.
  bool CancelRequested() const;
  // The real depth and geometry behind a record; nothing (and a complaint naming `call`) for a
  // record without pixels or one that disagrees with the world it names.
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

  // Of the frame being rendered; null and false outside.
  const RenderOptions* options = nullptr;
  const WorldBuffer* customLayer = nullptr;
  bool renderDeep = false;
  int passes = 0;

  PF_Cmd command = -1;                    // The running one.
  std::vector<PF_ParamDef> frameRecords;  // Copies that the effect sees in a command.
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

// The host of a callback that was given an effect_ref; null when the thread works for no host or
// the reference is wrong, which is a complaint about `call`.
HostState* HostOf(PF_ProgPtr effectRef, const char* call);

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_HOST_STATE_H_
