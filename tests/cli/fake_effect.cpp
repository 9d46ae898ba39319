// An effect that does one of a few things, chosen by its first control "test.work".
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "host/host_api.h"

namespace {

constexpr int kWorkIndex = 2;
constexpr int kParamCount = 4;
constexpr unsigned kPauseMicroseconds = 20000;
constexpr int kPauses = 1500;  // half a minute
constexpr int kNapPauses = 50;

enum Work {
  kCopy = 1,
  kWait,         // until the host asks to stop, or half a minute
  kStubborn,     // half a minute, whatever the host asks
  kOutOfMemory,  // fails
  kFade,         // halves alpha
  kRedden,       // sets red to white
  kNap,          // a second, unless the host asks to stop
  kDie,          // ends the process
  kVanish,       // takes the folder "out" away
  kKill,         // ends the process as the system does when memory is short
  kKeep,         // checks a parameter out and not in again
  kScribble,     // writes into its input
};

PF_Err Add(PF_InData* inData, PF_ParamType type, const char* name) {
  PF_ParamDef def{};
  def.param_type = type;
  std::strncpy(def.name, name, sizeof def.name - 1);
  if (type == PF_Param_POPUP) {
    def.u.pd.value = def.u.pd.dephault = kCopy;
    def.u.pd.num_choices = kScribble;
    def.u.pd.u.namesptr =
        "Copy|Wait|Stubborn|Out of Memory|Fade|Redden|Nap|Die|Vanish|Kill|Keep|Scribble";
  }
  return inData->inter.add_param(inData->effect_ref, -1, &def);
}

void ChangePixel(PF_Pixel& pixel, A_long work) {
  if (work == kFade) pixel.alpha = static_cast<A_u_char>(pixel.alpha / 2);
  if (work == kRedden) pixel.red = 255;
}

void ChangePixel(PF_Pixel16& pixel, A_long work) {
  if (work == kFade) pixel.alpha = static_cast<A_u_short>(pixel.alpha / 2);
  if (work == kRedden) pixel.red = 32768;
}

template <typename Pixel>
void Change(PF_LayerDef* output, A_long work) {
  for (A_long y = 0; y < output->height; ++y) {
    auto* row = reinterpret_cast<Pixel*>(reinterpret_cast<char*>(output->data) +
                                         static_cast<std::ptrdiff_t>(y) * output->rowbytes);
    for (A_long x = 0; x < output->width; ++x) ChangePixel(row[x], work);
  }
}

// Tells the test that rendering began.
void LeaveMark() {
  if (std::FILE* mark = std::fopen("rendering", "w")) std::fclose(mark);
}

PF_Err Pause(PF_InData* inData, bool listen, int pauses) {
  LeaveMark();
  for (int i = 0; i < pauses; ++i) {
    ::usleep(kPauseMicroseconds);
    const PF_Err stop = listen ? inData->inter.abort(inData->effect_ref) : PF_Err_NONE;
    if (stop != PF_Err_NONE) return stop;
  }
  return PF_Err_NONE;
}

PF_Err Render(PF_InData* inData, PF_ParamDef* params[], PF_LayerDef* output) {
  const A_long work = params[kWorkIndex]->u.pd.value;
  if (work == kOutOfMemory) return PF_Err_OUT_OF_MEMORY;
  if (work == kDie) std::abort();
  if (work == kKill) ::raise(SIGKILL);
  if (work == kKeep) {
    PF_ParamDef kept{};
    inData->inter.checkout_param(inData->effect_ref, kWorkIndex, 0, 1, 1, &kept);
  }
  if (work == kVanish && ::rmdir("out") != 0) return PF_Err_OUT_OF_MEMORY;
  if (work == kWait || work == kStubborn || work == kNap) {
    const PF_Err stop = Pause(inData, work != kStubborn, work == kNap ? kNapPauses : kPauses);
    if (stop != PF_Err_NONE) return stop;
  }
  const PF_Err copied =
      inData->utils->copy(inData->effect_ref, &params[0]->u.ld, output, nullptr, nullptr);
  if (copied != PF_Err_NONE) return copied;
  if (work == kScribble) *reinterpret_cast<char*>(params[0]->u.ld.data) ^= 1;
  if ((output->world_flags & PF_WorldFlag_DEEP) != 0) {
    Change<PF_Pixel16>(output, work);
  } else {
    Change<PF_Pixel>(output, work);
  }
  return PF_Err_NONE;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) PF_Err EntryPointFunc(
    PF_Cmd cmd, PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_LayerDef* output,
    void* /*extra*/) {
  switch (cmd) {
    case PF_Cmd_GLOBAL_SETUP:
      outData->out_flags = PF_OutFlag_DEEP_COLOR_AWARE;
      return PF_Err_NONE;
    case PF_Cmd_PARAMS_SETUP:
      Add(inData, PF_Param_GROUP_START, "II. TEST [fake]");
      Add(inData, PF_Param_POPUP, "Work");
      Add(inData, PF_Param_GROUP_END, "");
      outData->num_params = kParamCount;
      return PF_Err_NONE;
    case PF_Cmd_RENDER:
      return Render(inData, params, output);
    default:
      return PF_Err_NONE;
  }
}
