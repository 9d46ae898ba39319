// The headless host: drives an effect through its entry point and checks what it does.
#ifndef VITRELL_HEADLESS_EFFECT_HOST_H_
#define VITRELL_HEADLESS_EFFECT_HOST_H_

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "headless/call_log.h"
#include "headless/effect_module.h"
#include "headless/faults.h"
#include "headless/host_error.h"
#include "headless/host_maths.h"
#include "headless/parameters.h"
#include "headless/render.h"
#include "headless/world_buffer.h"
#include "host/host_api.h"

namespace vitrell::headless {

class HostState;

// One applied effect. A host is used by one thread at a time; several hosts may run on different
// threads at once, even on the same module.
class EffectHost {
 public:
  enum class Setup {
    kRun,   // The constructor sends GLOBAL_SETUP, PARAMS_SETUP and SEQUENCE_SETUP.
    kSkip,  // Neither set-up nor set-down is sent; for use with Send().
  };

  // Throws HostError if a set-up command fails or the number of parameters is inconsistent.
  explicit EffectHost(std::shared_ptr<const EffectModule> module, Setup setup = Setup::kRun);
  // Loads the module too.
  explicit EffectHost(const std::filesystem::path& modulePath, Setup setup = Setup::kRun);
  // Sends SEQUENCE_SETDOWN and GLOBAL_SETDOWN if the set-up was run.
  ~EffectHost();
  EffectHost(const EffectHost&) = delete;
  EffectHost& operator=(const EffectHost&) = delete;

  // --- Parameters ---

  // All parameters in panel order, the input layer first.
  const std::vector<Parameter>& Parameters() const;
  // The index of a control by its path, such as "fast-blur.amount". For an unknown path it throws a
  // HostError that suggests the nearest ones.
  int IndexOf(std::string_view path) const;
  std::optional<int> Find(std::string_view path) const;

  // Setters by index. They throw HostError for a wrong index or type but accept any value: range
  // checks are left to the caller.
  void SetFloat(int index, double value);
  void SetPopup(int index, A_long choice);  // 1-based.
  void SetCheckbox(int index, bool on);
  void SetPointPixels(int index, double x, double y);
  void SetPointPercent(int index, double x, double y);  // Of the input layer's size.
  void SetAngleDegrees(int index, double degrees);
  void SetColor(int index, PF_Pixel color);
  // Restores the registered defaults; the panel flags keep their state.
  void ResetParameters();

  // The percentages of a point that is set in percent, as all are by default.
  std::optional<PointPercent> PercentOf(int index) const;

  // The host's own record, with values in the host's units. A point set in percent holds percent in
  // 16.16 and is converted when a frame is rendered; any other value written here counts as pixels.
  PF_ParamDef& Record(int index);
  const PF_ParamDef& Record(int index) const;

  // --- Rendering ---

  // Sends FRAME_SETUP, RENDER and FRAME_SETDOWN. Input and output must have the same depth; the
  // effect gets copies of their records. Checking out a layer parameter yields the custom layer;
  // null means "no layer". Never throws because of what the effect does.
  RenderResult Render(const WorldBuffer& input, WorldBuffer& output,
                      const WorldBuffer* customLayer = nullptr, const RenderOptions& options = {});

  // --- Panel ---

  // Sends UPDATE_PARAMS_UI. The effect gets copies of the records; its calls of PF_UpdateParamUI
  // change uiFlags and the collapse bit in Parameters().
  PF_Err UpdatePanel();
  // Sends USER_CHANGED_PARAM for this index.
  PF_Err UserChangedParam(int index);
  // The record of the last panel command as the effect left it.
  const PF_ParamDef& PanelRecord(int index) const;

  // --- Other commands ---

  // Sends ABOUT and returns the effect's text. Throws HostError if the command fails.
  std::string About();
  // Sends any command. Unless records are given, the effect gets copies of the parameters and a
  // null output, or null for both in set-up and set-down commands.
  PF_Err Send(PF_Cmd cmd, PF_ParamDef* params[] = nullptr, PF_LayerDef* output = nullptr,
              void* extra = nullptr);

  // The records of the last command. A test may change them before Send().
  PF_InData& InData();
  PF_OutData& OutData();

  // --- Judgement ---

  // Host calls since the last public function began to send commands.
  const std::vector<HostCall>& Calls() const;
  // All faults of the effect so far, as full sentences.
  const std::vector<std::string>& Complaints() const;
  void ClearComplaints();
  Faults& GetFaults();

 private:
  void RunSetup();
  // Starts a fresh log and sends one command.
  PF_Err SendAlone(PF_Cmd cmd, PF_ParamDef* params[], PF_LayerDef* output, void* extra);
  PF_Err SendPanelCommand(PF_Cmd cmd, void* extra);
  // Null-terminated pointers to fresh copies of the records, for a layer of this size.
  std::vector<PF_ParamDef*> MakeFrameRecords(A_long width, A_long height);

  std::shared_ptr<const EffectModule> module_;  // Outlives the state.
  std::unique_ptr<HostState> state_;
  bool setUp_ = false;
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_EFFECT_HOST_H_
