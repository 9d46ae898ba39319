// Sequences of commands to one effect, with records that come and go between them.
#include <cstddef>
#include <string>

#include "fuzz/fuzz_records.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/literal_check.h"
#include "shell/parameters.h"

namespace vitrell::fuzz {
namespace {

constexpr int kMostSteps = 24;
constexpr int kMostRenders = 4;

// The pointer is null from now on, or again what it was.
template <typename Pointer>
void Toggle(Pointer& pointer, Pointer usual) {
  pointer = pointer == nullptr ? usual : nullptr;
}

void ToggleRecord(int choice, reliability::RawHost& host) {
  switch (choice) {
    case 0:
      return Toggle(host.inPointer, &host.in);
    case 1:
      return Toggle(host.outPointer, &host.out);
    case 2:
      return Toggle(host.paramsPointer, host.params.data());
    case 3:
      return Toggle(host.output, &host.outputRecord);
    case 4:
      return Toggle(host.in.utils, &host.utils);
    default:
      return Toggle(host.in.pica_basicP, &host.basic);
  }
}

void TakeCallback(int choice, reliability::RawHost& host) {
  switch (choice) {
    case 0:
      host.utils.new_world = nullptr;
      return;
    case 1:
      host.utils.copy = nullptr;
      return;
    case 2:
      host.utils.fill = nullptr;
      return;
    case 3:
      host.utils.ansi.pow = nullptr;
      return;
    case 4:
      host.paramUtilsSuite.PF_UpdateParamUI = nullptr;
      return;
    case 5:
      host.iterate8Suite.iterate = nullptr;
      return;
    case 6:
      host.in.inter.add_param = nullptr;
      return;
    default:
      host.basic.ReleaseSuite = nullptr;
      return;
  }
}

// The layout: worlds, then steps of a kind and what belongs to it.
void SendCommands(ByteReader bytes) {
  reliability::RawHost host(&EntryPointFunc, SetupFrom(bytes));
  int renders = 0;
  for (int step = 0; step < kMostSteps && !bytes.AtEnd(); ++step) {
    const int kind = bytes.Below(8);
    const int index = bytes.Byte() % PARAM_COUNT;
    if (kind < 3) {
      const PF_Cmd cmd = index <= PF_Cmd_NUM_CMDS ? index : bytes.Word();
      if (cmd == PF_Cmd_RENDER && ++renders > kMostRenders) continue;
      SendChecked(cmd, host);
    } else if (kind < 5) {
      SetParameter(bytes, index, host);
    } else if (kind == 5) {
      PlanFaults(bytes, host);
    } else if (kind == 6) {
      Toggle(host.params[static_cast<std::size_t>(index)], &host.Param(index));
    } else if (index < 6) {
      ToggleRecord(index, host);
    } else {
      TakeCallback(index - 6, host);
    }
  }
}

reliability::RawHost::Setup SmallDeepFrame() {
  reliability::RawHost::Setup setup;
  setup.width = 5;
  setup.height = 4;
  setup.deep = true;
  setup.end = reliability::MemoryEnd::kHeap;
  return setup;
}

literal::World ExpectedFrame() {
  reliability::RawHost host(&EntryPointFunc, SmallDeepFrame());
  return LiteralRender(host).value().output;
}

// Whatever was sent before, another host's frame is exact.
void CheckNextFrame() {
  static const literal::World expected = ExpectedFrame();
  reliability::RawHost host(&EntryPointFunc, SmallDeepFrame());
  const PF_Err error = SendChecked(PF_Cmd_RENDER, host);
  Require(error == PF_Err_NONE, "a sound frame answers " + std::to_string(error));
  RequirePicture(expected, host);
}

}  // namespace
}  // namespace vitrell::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vitrell::fuzz::SendCommands({data, size});
  vitrell::fuzz::CheckNextFrame();
  return 0;
}
