// Set-up, parameters and panel of an applied effect.
#include "headless/effect_host.h"

#include <algorithm>
#include <utility>

#include "headless/host_state.h"
#include "headless/record_bytes.h"

namespace vitrell::headless {
namespace {

constexpr std::size_t kNamesOffered = 3;

bool ComesBeforeParameters(PF_Cmd cmd) {
  return cmd == PF_Cmd_ABOUT || cmd == PF_Cmd_GLOBAL_SETUP || cmd == PF_Cmd_GLOBAL_SETDOWN ||
         cmd == PF_Cmd_PARAMS_SETUP || cmd == PF_Cmd_SEQUENCE_SETUP ||
         cmd == PF_Cmd_SEQUENCE_SETDOWN;
}

std::string Quoted(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

}  // namespace

EffectHost::EffectHost(std::shared_ptr<const EffectModule> module, Setup setup)
    : module_(std::move(module)), state_(std::make_unique<HostState>(module_->EntryPoint())) {
  if (setup == Setup::kRun) RunSetup();
}

EffectHost::EffectHost(const std::filesystem::path& modulePath, Setup setup)
    : EffectHost(std::make_shared<const EffectModule>(modulePath), setup) {}

EffectHost::~EffectHost() {
  if (!setUp_) return;
  state_->recorder.Start();
  (void)state_->Command(PF_Cmd_SEQUENCE_SETDOWN, nullptr, nullptr, nullptr);
  (void)state_->Command(PF_Cmd_GLOBAL_SETDOWN, nullptr, nullptr, nullptr);
}

void EffectHost::RunSetup() {
  state_->recorder.Start();
  for (const PF_Cmd cmd : {PF_Cmd_GLOBAL_SETUP, PF_Cmd_PARAMS_SETUP, PF_Cmd_SEQUENCE_SETUP}) {
    const PF_Err error = state_->Command(cmd, nullptr, nullptr, nullptr);
    if (error != PF_Err_NONE) {
      throw HostError("The effect " + module_->Name() + " cannot be set up; its command " +
                      CommandName(cmd) + " answers " + DescribeError(error) + ".");
    }
    if (cmd == PF_Cmd_PARAMS_SETUP && state_->out.num_params != state_->parameters.Count()) {
      throw HostError("The effect " + module_->Name() + " cannot be set up; it tells of " +
                      std::to_string(state_->out.num_params) + " parameters, but with the input " +
                      "layer there are " + std::to_string(state_->parameters.Count()) + ".");
    }
  }
  setUp_ = true;
}

const std::vector<Parameter>& EffectHost::Parameters() const { return state_->parameters.All(); }

std::optional<int> EffectHost::Find(std::string_view path) const {
  for (const Parameter& parameter : Parameters()) {
    if (parameter.IsControl() && parameter.path == path) return parameter.index;
  }
  return std::nullopt;
}

int EffectHost::IndexOf(std::string_view path) const {
  if (const std::optional<int> index = Find(path)) return *index;
  throw HostError("The effect has no parameter \"" + std::string(path) + "\"; the nearest are " +
                  Quoted(NearestPaths(Parameters(), path, kNamesOffered)) + ".");
}

void EffectHost::SetFloat(int index, double value) {
  state_->parameters.Record(index, PF_Param_FLOAT_SLIDER).u.fs_d.value = value;
}

void EffectHost::SetPopup(int index, A_long choice) {
  state_->parameters.Record(index, PF_Param_POPUP).u.pd.value = choice;
}

void EffectHost::SetCheckbox(int index, bool on) {
  state_->parameters.Record(index, PF_Param_CHECKBOX).u.bd.value = on ? 1 : 0;
}

void EffectHost::SetPointPixels(int index, double x, double y) {
  state_->parameters.SetPointPixels(index, x, y);
}

void EffectHost::SetPointPercent(int index, double x, double y) {
  state_->parameters.SetPointPercent(index, x, y);
}

void EffectHost::SetAngleDegrees(int index, double degrees) {
  state_->parameters.Record(index, PF_Param_ANGLE).u.ad.value = ToFixed(degrees);
}

void EffectHost::SetColor(int index, PF_Pixel color) {
  state_->parameters.Record(index, PF_Param_COLOR).u.cd.value = color;
}

void EffectHost::ResetParameters() { state_->parameters.Reset(); }

std::optional<PointPercent> EffectHost::PercentOf(int index) const {
  return state_->parameters.PercentOf(index);
}

PF_ParamDef& EffectHost::Record(int index) { return state_->parameters.Record(index); }

const PF_ParamDef& EffectHost::Record(int index) const {
  return std::as_const(state_->parameters).Record(index);
}

std::vector<PF_ParamDef*> EffectHost::MakeFrameRecords(A_long width, A_long height) {
  state_->frameRecords = state_->parameters.RecordsForSize(width, height);
  std::vector<PF_ParamDef*> pointers;
  for (PF_ParamDef& record : state_->frameRecords) pointers.push_back(&record);
  pointers.push_back(nullptr);
  return pointers;
}

PF_Err EffectHost::SendAlone(PF_Cmd cmd, PF_ParamDef* params[], PF_LayerDef* output, void* extra) {
  state_->recorder.Start();
  state_->worlds.Clear();
  return state_->Command(cmd, params, output, extra);
}

PF_Err EffectHost::SendPanelCommand(PF_Cmd cmd, void* extra) {
  std::vector<PF_ParamDef*> params = MakeFrameRecords(state_->in.width, state_->in.height);
  const std::vector<PF_ParamDef> before = state_->frameRecords;
  const PF_Err error = SendAlone(cmd, params.data(), nullptr, extra);
  for (std::size_t i = 0; i < before.size(); ++i) {
    const bool same = SameBytes(before[i].u, state_->frameRecords[i].u);
    const bool told = (state_->frameRecords[i].uu.change_flags & PF_ChangeFlag_CHANGED_VALUE) != 0;
    if (same) continue;
    if (told) {
      state_->parameters.Record(static_cast<int>(i)).u = state_->frameRecords[i].u;
    } else {
      state_->Complain("changed the value of parameter " + std::to_string(i) +
                       " without saying so in its change flags");
    }
  }
  return error;
}

PF_Err EffectHost::UpdatePanel() { return SendPanelCommand(PF_Cmd_UPDATE_PARAMS_UI, nullptr); }

PF_Err EffectHost::UserChangedParam(int index) {
  PF_UserChangedParamExtra extra{index};
  return SendPanelCommand(PF_Cmd_USER_CHANGED_PARAM, &extra);
}

const PF_ParamDef& EffectHost::PanelRecord(int index) const {
  if (index < 0 || index >= static_cast<int>(state_->frameRecords.size())) {
    throw HostError("There is no panel record " + std::to_string(index) +
                    "; send a panel command first and ask for a parameter that exists.");
  }
  return state_->frameRecords[static_cast<std::size_t>(index)];
}

std::string EffectHost::About() {
  const PF_Err error = SendAlone(PF_Cmd_ABOUT, nullptr, nullptr, nullptr);
  if (error != PF_Err_NONE) {
    throw HostError("The effect " + module_->Name() + " cannot tell about itself; it answers " +
                    DescribeError(error) + ".");
  }
  return state_->out.return_msg;
}

PF_Err EffectHost::Send(PF_Cmd cmd, PF_ParamDef* params[], PF_LayerDef* output, void* extra) {
  if (params != nullptr || ComesBeforeParameters(cmd)) {
    return SendAlone(cmd, params, output, extra);
  }
  std::vector<PF_ParamDef*> copies = MakeFrameRecords(state_->in.width, state_->in.height);
  return SendAlone(cmd, copies.data(), output, extra);
}

PF_InData& EffectHost::InData() { return state_->in; }

PF_OutData& EffectHost::OutData() { return state_->out; }

const std::vector<HostCall>& EffectHost::Calls() const { return state_->recorder.Calls(); }

const std::vector<std::string>& EffectHost::Complaints() const { return state_->complaints; }

void EffectHost::ClearComplaints() { state_->complaints.clear(); }

Faults& EffectHost::GetFaults() { return state_->recorder.GetFaults(); }

}  // namespace vitrell::headless
