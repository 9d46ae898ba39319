// Sends commands and checks the effect after each.
#include "headless/host_state.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <thread>

#include "headless/current_host.h"
#include "headless/host_tables.h"
#include "headless/record_bytes.h"

namespace vitrell::headless {
namespace {

constexpr PF_SpecVersion kApiVersion = {13, 28};

// A field of the output record and the commands that may write it.
struct OutField {
  const char* name;
  std::size_t offset;
  std::size_t size;
  std::vector<PF_Cmd> writers;
};

#define VITRELL_OUT_FIELD(field, ...)                                               \
  {                                                                                 \
#field, offsetof(PF_OutData, field), sizeof(PF_OutData::field), { __VA_ARGS__ } \
  }

// return_msg is not listed because every command may write it.
const std::vector<OutField>& OutFields() {
  static const std::vector<OutField> fields = {
      VITRELL_OUT_FIELD(my_version, PF_Cmd_GLOBAL_SETUP),
      VITRELL_OUT_FIELD(name, PF_Cmd_GLOBAL_SETUP),
      VITRELL_OUT_FIELD(global_data, PF_Cmd_GLOBAL_SETUP, PF_Cmd_GLOBAL_SETDOWN),
      VITRELL_OUT_FIELD(num_params, PF_Cmd_PARAMS_SETUP),
      VITRELL_OUT_FIELD(sequence_data, PF_Cmd_SEQUENCE_SETUP, PF_Cmd_SEQUENCE_RESETUP,
                        PF_Cmd_SEQUENCE_FLATTEN, PF_Cmd_SEQUENCE_SETDOWN, PF_Cmd_DO_DIALOG),
      VITRELL_OUT_FIELD(flat_sdata_size, PF_Cmd_SEQUENCE_SETUP, PF_Cmd_SEQUENCE_RESETUP,
                        PF_Cmd_SEQUENCE_FLATTEN),
      VITRELL_OUT_FIELD(frame_data, PF_Cmd_FRAME_SETUP, PF_Cmd_FRAME_SETDOWN),
      VITRELL_OUT_FIELD(width, PF_Cmd_FRAME_SETUP),
      VITRELL_OUT_FIELD(height, PF_Cmd_FRAME_SETUP),
      VITRELL_OUT_FIELD(origin, PF_Cmd_FRAME_SETUP),
      VITRELL_OUT_FIELD(out_flags, PF_Cmd_GLOBAL_SETUP, PF_Cmd_PARAMS_SETUP, PF_Cmd_DO_DIALOG,
                        PF_Cmd_USER_CHANGED_PARAM, PF_Cmd_UPDATE_PARAMS_UI),
      VITRELL_OUT_FIELD(start_sampL),
      VITRELL_OUT_FIELD(dur_sampL),
      VITRELL_OUT_FIELD(dest_snd),
      VITRELL_OUT_FIELD(out_flags2, PF_Cmd_GLOBAL_SETUP),
  };
  return fields;
}

#undef VITRELL_OUT_FIELD

}  // namespace

std::string CommandName(PF_Cmd cmd) {
  switch (cmd) {
    case PF_Cmd_ABOUT:
      return "ABOUT";
    case PF_Cmd_GLOBAL_SETUP:
      return "GLOBAL_SETUP";
    case PF_Cmd_GLOBAL_SETDOWN:
      return "GLOBAL_SETDOWN";
    case PF_Cmd_PARAMS_SETUP:
      return "PARAMS_SETUP";
    case PF_Cmd_SEQUENCE_SETUP:
      return "SEQUENCE_SETUP";
    case PF_Cmd_SEQUENCE_SETDOWN:
      return "SEQUENCE_SETDOWN";
    case PF_Cmd_FRAME_SETUP:
      return "FRAME_SETUP";
    case PF_Cmd_RENDER:
      return "RENDER";
    case PF_Cmd_FRAME_SETDOWN:
      return "FRAME_SETDOWN";
    case PF_Cmd_USER_CHANGED_PARAM:
      return "USER_CHANGED_PARAM";
    case PF_Cmd_UPDATE_PARAMS_UI:
      return "UPDATE_PARAMS_UI";
    default:
      return "command " + std::to_string(cmd);
  }
}

HostState* HostOf(PF_ProgPtr effectRef, const char* call) {
  HostState* host = CurrentHost();
  if (host == nullptr || effectRef == host->EffectRef()) return host;
  host->Complain(std::string("called ") + call + " with an effect_ref that is not its own");
  return nullptr;
}

HostState::HostState(PF_EntryPoint entryPoint)
    : entryPoint_(entryPoint), utils_(MakeUtilCallbacks()) {
  in.inter = MakeInteractCallbacks();
  in.utils = &utils_;
  in.effect_ref = EffectRef();
  in.quality = PF_Quality_HI;
  in.version = kApiVersion;
  in.appl_id = kHostAppId;
  in.time_scale = 1;
  in.downsample_x = in.downsample_y = in.pixel_aspect_ratio = {1, 1};
}

PF_Err HostState::Command(PF_Cmd cmd, PF_ParamDef* params[], PF_LayerDef* output, void* extra) {
  in.num_params = parameters.Count();
  in.pica_basicP = recorder.GetFaults().NullBasicSuite() ? nullptr : BasicSuite();
  out.return_msg[0] = '\0';
  PF_InData inBefore;
  PF_OutData outBefore;
  std::memcpy(&inBefore, &in, sizeof(in));
  std::memcpy(&outBefore, &out, sizeof(out));
  command = cmd;
  const PF_Err error = CallEntryPoint(cmd, params, output, extra);
  if (!SameBytes(inBefore, in)) {
    Complain("wrote into the input record, which is the host's");
    std::memcpy(&in, &inBefore, sizeof(in));
  }
  JudgeOutput(outBefore);
  JudgeOutstanding();
  in.global_data = out.global_data;
  in.sequence_data = out.sequence_data;
  in.frame_data = out.frame_data;
  return error;
}

PF_Err HostState::CallEntryPoint(PF_Cmd cmd, PF_ParamDef* params[], PF_LayerDef* output,
                                 void* extra) {
  const CurrentHostScope scope(this);
  try {
    return entryPoint_(cmd, &in, &out, params, output, extra);
  } catch (...) {
    Complain("let an exception leave its entry point, which ends a real host");
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
  }
}

void HostState::JudgeOutput(const PF_OutData& before) {
  const auto* was = reinterpret_cast<const std::byte*>(&before);
  const auto* is = reinterpret_cast<const std::byte*>(&out);
  for (const OutField& field : OutFields()) {
    if (std::memcmp(was + field.offset, is + field.offset, field.size) == 0) continue;
    const bool allowed =
        std::find(field.writers.begin(), field.writers.end(), command) != field.writers.end();
    if (!allowed) {
      Complain(std::string("wrote the field ") + field.name +
               " of the output record, which this command must leave alone");
    }
  }
  if (std::memchr(out.return_msg, '\0', sizeof(out.return_msg)) == nullptr) {
    Complain("left return_msg without an end");
    out.return_msg[sizeof(out.return_msg) - 1] = '\0';
  }
}

void HostState::JudgeOutstanding() {
  for (const auto& [suite, count] : suites.TakeOutstanding()) {
    Complain("did not release the suite " + suite +
             (count > 1 ? " (" + std::to_string(count) + " times)" : ""));
  }
  for (const int index : checkouts.TakeOutstanding()) {
    Complain("did not check in parameter " + std::to_string(index));
  }
  for (const auto& [name, buffer] : worlds.TakeOutstanding()) {
    Complain("did not dispose of " + name);
    if (const auto damage = buffer->Damage()) Complain("wrote outside " + name + ". " + *damage);
  }
  if (const int count = blocks.FreeOutstanding(); count > 0) {
    Complain("did not free memory blocks of the host, " + std::to_string(count) + " in number");
  }
}

void HostState::Complain(const std::string& what) {
  const std::lock_guard<std::mutex> lock(complaintsMutex_);
  std::string sentence = "During " + CommandName(command) + " the effect " + what;
  if (sentence.back() != '.') sentence += '.';
  complaints.push_back(std::move(sentence));
}

const RenderOptions& HostState::Options() const {
  static const RenderOptions defaults;
  return options != nullptr ? *options : defaults;
}

int HostState::Threads() const {
  const int wanted = Options().threads;
  if (wanted > 0) return wanted;
  return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

bool HostState::CancelRequested() const {
  const std::atomic<bool>* cancel = Options().cancel;
  return cancel != nullptr && cancel->load(std::memory_order_relaxed);
}

std::optional<PixelView> HostState::ViewOf(const PF_LayerDef* world, const char* call) {
  if (world == nullptr || world->data == nullptr) {
    Complain(std::string("called ") + call + " with a world that has no pixels");
    return std::nullopt;
  }
  const std::optional<KnownWorld> known = worlds.Find(world);
  if (!known) {
    const bool deep = (world->world_flags & PF_WorldFlag_DEEP) != 0;
    return PixelView{world->data, world->rowbytes, world->width, world->height, deep};
  }
  const bool agrees = known->def.rowbytes == world->rowbytes && known->def.width == world->width &&
                      known->def.height == world->height &&
                      known->deep == ((world->world_flags & PF_WorldFlag_DEEP) != 0);
  if (!agrees) {
    Complain(std::string("called ") + call + " with a record of " + known->name +
             " whose size, row length or depth is not that of the world");
    return std::nullopt;
  }
  return PixelView{world->data, world->rowbytes, world->width, world->height, known->deep};
}

}  // namespace vitrell::headless
