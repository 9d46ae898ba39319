// The callbacks in the input record: parameters, abort and progress.
#include <cstring>

#include "headless/current_host.h"
#include "headless/host_state.h"
#include "headless/host_tables.h"

namespace vitrell::headless {
namespace {

bool IsPanelOrSetup(PF_Cmd cmd) {
  return cmd == PF_Cmd_USER_CHANGED_PARAM || cmd == PF_Cmd_UPDATE_PARAMS_UI ||
         cmd == PF_Cmd_GLOBAL_SETUP || cmd == PF_Cmd_PARAMS_SETUP;
}

bool IsFrameRecord(const HostState& host, const PF_ParamDef* record) {
  for (const PF_ParamDef& own : host.frameRecords) {
    if (&own == record) return true;
  }
  return false;
}

// An index beyond the table yields an empty record and success, as the host does.
void FillCheckout(const HostState& host, PF_ParamIndex index, PF_ParamDef& param) {
  param = PF_ParamDef{};
  if (index >= static_cast<PF_ParamIndex>(host.frameRecords.size())) return;
  param = host.frameRecords[static_cast<std::size_t>(index)];
  if (param.param_type != PF_Param_LAYER || index == 0) return;
  param.u.ld = host.customLayer != nullptr ? host.customLayer->Def() : PF_LayerDef{};
}

PF_Err CheckoutParam(PF_ProgPtr effectRef, PF_ParamIndex index, A_long time, A_long timeStep,
                     A_u_long timeScale, PF_ParamDef* param) {
  HostState* host = HostOf(effectRef, "checkout_param");
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, CallKind::kCheckoutParam);
  const std::string text = "checkout_param " + std::to_string(index) + " time " +
                           std::to_string(time) + " step " + std::to_string(timeStep) + " scale " +
                           std::to_string(timeScale);
  if (param == nullptr || index < 0) {
    host->Complain("called checkout_param with a negative index or without a record to fill");
    return call.Answer(text, PF_Err_INVALID_INDEX);
  }
  if (IsFrameRecord(*host, param)) {
    host->Complain("checked out parameter " + std::to_string(index) +
                   " into a record of the host's own array");
    return call.Answer(text, PF_Err_BAD_CALLBACK_PARAM);
  }
  if (call.Fault() != PF_Err_NONE) {
    *param = PF_ParamDef{};
    return call.Answer(text, call.Fault());
  }
  if (IsPanelOrSetup(host->command)) {
    host->Complain("checked out parameter " + std::to_string(index) +
                   ", which gives nothing useful in this command");
  }
  FillCheckout(*host, index, *param);
  host->checkouts.CheckOut(param, index);
  return call.Answer(text, PF_Err_NONE);
}

PF_Err CheckinParam(PF_ProgPtr effectRef, PF_ParamDef* param) {
  HostState* host = HostOf(effectRef, "checkin_param");
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, CallKind::kCheckinParam);
  const std::optional<int> index = host->checkouts.CheckIn(param);
  if (!index) {
    host->Complain("checked in a parameter record that was not checked out");
    return call.Answer("checkin_param unknown", PF_Err_BAD_CALLBACK_PARAM);
  }
  return call.Answer("checkin_param " + std::to_string(*index), call.Fault());
}

void JudgeRecord(HostState& host, const PF_ParamDef& record) {
  const std::string number = std::to_string(host.parameters.Count());
  if (std::memchr(record.name, '\0', sizeof(record.name)) == nullptr) {
    host.Complain("registered parameter " + number + " with a name of more than 31 letters");
  }
  const Parameter parameter = DescribeRecord(host.parameters.Count(), record);
  if (record.param_type == PF_Param_POPUP) {
    const auto choices = static_cast<A_short>(parameter.choices.size());
    if (choices != record.u.pd.num_choices || record.u.pd.dephault < 1 ||
        record.u.pd.dephault > choices) {
      host.Complain("registered parameter " + number +
                    " with a number of choices or a default that its list of choices denies");
    }
  }
  if (record.param_type == PF_Param_FLOAT_SLIDER) {
    const bool ordered = parameter.validMin <= parameter.sliderMin &&
                         parameter.sliderMin <= parameter.sliderMax &&
                         parameter.sliderMax <= parameter.validMax &&
                         parameter.validMin <= parameter.defaultNumber &&
                         parameter.defaultNumber <= parameter.validMax;
    if (!ordered) host.Complain("registered slider " + number + " with limits out of order");
  }
}

PF_Err AddParam(PF_ProgPtr effectRef, PF_ParamIndex index, PF_ParamDef* def) {
  HostState* host = HostOf(effectRef, "add_param");
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, CallKind::kAddParam);
  if (def == nullptr) {
    host->Complain("called add_param without a record");
    return call.Answer("add_param " + std::to_string(index), PF_Err_BAD_CALLBACK_PARAM);
  }
  const Parameter parameter = DescribeRecord(host->parameters.Count(), *def);
  const std::string text = "add_param " + std::to_string(index) + " id " +
                           std::to_string(def->uu.id) + " \"" + parameter.name + "\"";
  if (call.Fault() != PF_Err_NONE) return call.Answer(text, call.Fault());
  if (host->command != PF_Cmd_PARAMS_SETUP) {
    host->Complain("registered a parameter, which PARAMS_SETUP alone may do");
    return call.Answer(text, PF_Err_INVALID_CALLBACK);
  }
  if (index != -1) host->Complain("registered a parameter at an index other than -1");
  JudgeRecord(*host, *def);
  host->parameters.Add(*def);
  return call.Answer(text, PF_Err_NONE);
}

PF_Err CancelOr(const HostState& host, PF_Err fault) {
  if (fault != PF_Err_NONE) return fault;
  return host.CancelRequested() ? PF_Interrupt_CANCEL : PF_Err_NONE;
}

PF_Err Abort(PF_ProgPtr effectRef) {
  HostState* host = HostOf(effectRef, "abort");
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, CallKind::kAbort);
  return call.Answer("abort", CancelOr(*host, call.Fault()));
}

PF_Err Progress(PF_ProgPtr effectRef, A_long current, A_long total) {
  HostState* host = HostOf(effectRef, "progress");
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, CallKind::kProgress);
  return call.Answer("progress " + std::to_string(current) + " of " + std::to_string(total),
                     CancelOr(*host, call.Fault()));
}

}  // namespace

void UnservedCallback() {
  if (HostState* host = CurrentHost()) {
    host->Complain("called a host function that this host does not serve");
  }
}

PF_InteractCallbacks MakeInteractCallbacks() {
  PF_InteractCallbacks callbacks{};
  callbacks.checkout_param = CheckoutParam;
  callbacks.checkin_param = CheckinParam;
  callbacks.add_param = AddParam;
  callbacks.abort = Abort;
  callbacks.progress = Progress;
  callbacks.register_ui = UnservedCallback;
  callbacks.checkout_layer_audio = UnservedCallback;
  callbacks.checkin_layer_audio = UnservedCallback;
  callbacks.get_audio_data = UnservedCallback;
  return callbacks;
}

}  // namespace vitrell::headless
