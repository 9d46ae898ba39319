// Records, parameters and pixels made of bytes, and what the effect may answer to them.
#include "fuzz/fuzz_records.h"

#include <iterator>
#include <limits>
#include <string>

#include "fuzz/fuzz_target.h"
#include "shell/parameters.h"

namespace vitrell::fuzz {
namespace {

using reliability::FormatAnswer;
using reliability::MemoryEnd;
using reliability::RawHost;
using reliability::WorldKind;

constexpr PF_Err kFormatFails = 777;  // RawHost's answer for FormatAnswer::kFails.
constexpr int kLongestSide = 24;

WorldKind KindFrom(ByteReader& bytes) {
  return static_cast<WorldKind>(bytes.Below(static_cast<int>(WorldKind::kCount)));
}

// Short steps first, then long ones.
double AmountFrom(ByteReader& bytes, int shortSteps) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kStrange[] = {std::numeric_limits<double>::quiet_NaN(),
                                 kInfinity,
                                 -kInfinity,
                                 -1,
                                 -0.0,
                                 1e-40,
                                 -1e300,
                                 1e300,
                                 0.01};
  if (bytes.Rarely()) return kStrange[bytes.Below(static_cast<int>(std::size(kStrange)))];
  const int step = bytes.Byte();
  return step < shortSteps ? step / 4.0 : 50.0 + (step - shortSteps) * 5.0;
}

A_long IntegerFrom(ByteReader& bytes, int usual) {
  return bytes.Rarely() ? bytes.Word() : bytes.Below(usual);
}

A_long FixedFrom(ByteReader& bytes, int usual) {
  return bytes.Rarely() ? bytes.Word() : bytes.Below(usual) << 16;
}

// A failing abort request alone skips the check-in, so that only what is lent for longer counts
// once a call has failed.
bool HasGivenBack(const RawHost& host) {
  return host.failures > 0 ? host.liveWorlds == 0 && host.openSuites == 0
                           : host.Outstanding().empty();
}

bool IsToldAnswer(PF_Err error, const RawHost& host) {
  return error == PF_Err_NONE || error == PF_Err_OUT_OF_MEMORY ||
         error == PF_Err_BAD_CALLBACK_PARAM ||
         (error == kFormatFails && host.GetSetup().format == FormatAnswer::kFails) ||
         (error == RawHost::kPlannedFault && host.failures > 0);
}

}  // namespace

RawHost::Setup SetupFrom(ByteReader& bytes) {
  RawHost::Setup setup;
  setup.end = MemoryEnd::kHeap;
  const std::uint8_t flags = bytes.Byte();
  setup.deep = (flags & 1U) != 0;
  setup.onlyOneNewWorldIsStrange = (flags & 2U) != 0;
  setup.copiesFromNothing = (flags & 4U) != 0;
  setup.givesEmptyWorlds = (flags & 8U) != 0;
  setup.custom = (flags & 16U) != 0 ? WorldKind::kUsual : WorldKind::kNoData;
  const int widthAndOrder = bytes.Byte();
  setup.width = 1 + widthAndOrder % (kLongestSide - 2);  // The custom layer is 2 and 3 larger.
  setup.iteratesBackwards = widthAndOrder >= 128;
  setup.height = 1 + bytes.Below(kLongestSide - 3);
  if ((flags & 32U) != 0) {
    setup.input = KindFrom(bytes);
    setup.output = KindFrom(bytes);
  }
  if ((flags & 64U) != 0) {
    setup.custom = KindFrom(bytes);
    setup.newWorlds = KindFrom(bytes);
  }
  if ((flags & 128U) != 0) {
    setup.format = static_cast<FormatAnswer>(bytes.Below(static_cast<int>(FormatAnswer::kCount)));
  }
  return setup;
}

void SetParameter(ByteReader& bytes, int index, RawHost& host) {
  PF_ParamDef& record = host.Param(index);
  switch (record.param_type) {
    case PF_Param_FLOAT_SLIDER:
      // A long radius takes long, however small the picture.
      record.u.fs_d.value = AmountFrom(bytes, index == PARAM_REALISTIC_AMOUNT ? 256 : 192);
      break;
    case PF_Param_POPUP:
      record.u.pd.value = IntegerFrom(bytes, 30);
      break;
    case PF_Param_CHECKBOX:
      record.u.bd.value = IntegerFrom(bytes, 2);
      break;
    case PF_Param_POINT:
      record.u.td.x_value = FixedFrom(bytes, kLongestSide);
      record.u.td.y_value = FixedFrom(bytes, kLongestSide);
      break;
    case PF_Param_ANGLE:
      record.u.ad.value = FixedFrom(bytes, 256);
      break;
    case PF_Param_COLOR:
      record.u.cd.value = {bytes.Byte(), bytes.Byte(), bytes.Byte(), bytes.Byte()};
      break;
    default:
      break;
  }
}

void PlanFaults(ByteReader& bytes, RawHost& host) {
  host.failingCalls.clear();
  for (int count = bytes.Below(4); count > 0; --count) host.failingCalls.push_back(bytes.Byte());
}

PF_Err SendChecked(PF_Cmd cmd, RawHost& host) {
  host.calls = host.failures = host.openCheckouts = 0;
  const std::uint64_t before = host.OutputChecksum();
  const PF_Err error = host.Send(cmd);
  const std::string name = "command " + std::to_string(cmd);
  Require(IsToldAnswer(error, host), name + " answers " + std::to_string(error));
  Require(HasGivenBack(host), name + " " + host.Outstanding());
  // A call that fails after the last copy comes too late for the output.
  Require(error == PF_Err_NONE || host.failures > 0 || host.OutputChecksum() == before,
          name + " answers " + std::to_string(error) + " and changes the output");
  return error;
}

}  // namespace vitrell::fuzz
