// 64-bit ARM: macOS passes variadic arguments on the stack, Linux in registers first.
//
// Of the other differences none is met. Arguments behind the eighth are packed on macOS's stack,
// but no function between effect and host has more than eight, nor one of type long double. A
// narrow argument is widened by macOS's caller and by Linux's callee; the one the host takes comes
// from the effect, and the effect takes none. Register 18 is left alone by the image's code, as
// Linux allows.
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "packaging/processor.h"

extern "C" {

int VitrellStackSprintf(char* out, const char* format, ...);

// What the thunk below makes of a call: the variadic arguments as they lie on the stack.
__attribute__((visibility("hidden"), used)) int VitrellSprintfFrom(char* out, const char* format,
                                                                   void* arguments) {
  // Linux's va_list once all registers are used up: further arguments lie on the stack, each in
  // eight bytes, as they do on macOS.
  struct {
    void* stack;
    void* generalEnd;
    void* vectorEnd;
    int generalOffset;
    int vectorOffset;
  } const usedUp = {arguments, nullptr, nullptr, 0, 0};
  std::va_list list;
  static_assert(sizeof(list) == sizeof(usedUp));
  std::memcpy(&list, &usedUp, sizeof(list));
  return std::vsprintf(out, format, list);
}

}  // extern "C"

__asm__(R"(
  .text
  .globl VitrellStackSprintf
  .hidden VitrellStackSprintf
  .type VitrellStackSprintf, @function
VitrellStackSprintf:
  mov x2, sp
  b VitrellSprintfFrom
  .size VitrellStackSprintf, . - VitrellStackSprintf
)");

namespace vitrell::packaging {
namespace {

PF_EntryPoint g_image = nullptr;
const SPBasicSuite* g_hostSuite = nullptr;  // Of the host that called last; all share one.

// The host's maths, with a sprintf that macOS's code can call.
SPErr AcquireAdapted(const char* name, std::int32_t version, const void** suite) {
  static PF_ANSICallbacksSuite1 adapted;
  const SPErr error = g_hostSuite->AcquireSuite(name, version, suite);
  if (error == 0 && std::strcmp(name, kPFAnsiSuite) == 0) {
    static const bool once [[maybe_unused]] = [&] {
      adapted = *static_cast<const PF_ANSICallbacksSuite1*>(*suite);
      adapted.sprintf = VitrellStackSprintf;
      return true;
    }();
    *suite = &adapted;
  }
  return error;
}

// The host finds its record as it was.
PF_Err CallImage(PF_Cmd cmd, PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[],
                 PF_LayerDef* output, void* extra) {
  if (inData == nullptr || inData->pica_basicP == nullptr) {
    return g_image(cmd, inData, outData, params, output, extra);
  }
  SPBasicSuite* const own = inData->pica_basicP;
  g_hostSuite = own;
  SPBasicSuite adapted = *own;
  adapted.AcquireSuite = AcquireAdapted;
  inData->pica_basicP = &adapted;
  const PF_Err error = g_image(cmd, inData, outData, params, output, extra);
  inData->pica_basicP = own;
  return error;
}

}  // namespace

const char* const kSlice = "arm64";
const FrameRules kFrameRules = {0x04000000, 29, 30};

// One bit for each pair of registers, x19 to x28 and d8 to d15, which lie below the frame pointer
// in this order.
std::vector<SavedRegister> SavedRegisters(std::uint32_t encoding) {
  constexpr struct {
    std::uint32_t bit;
    int number;
  } kPairs[] = {{0x001, 19}, {0x002, 21}, {0x004, 23}, {0x008, 25}, {0x010, 27},
                {0x100, 72}, {0x200, 74}, {0x400, 76}, {0x800, 78}};
  std::vector<SavedRegister> registers;
  std::uint32_t known = 0;
  for (const auto& pair : kPairs) {
    known |= pair.bit;
    if ((encoding & pair.bit) == 0) continue;
    const auto distance = static_cast<std::uint32_t>(3 + registers.size());
    registers.push_back({pair.number, distance});
    registers.push_back({pair.number + 1, distance + 1});
  }
  if ((encoding & 0xFFFFFF & ~known) != 0) {
    throw std::runtime_error("an unwind entry saves no known register");
  }
  return registers;
}

PF_EntryPoint AdaptEntryPoint(PF_EntryPoint image) {
  if (g_image != nullptr && g_image != image) throw std::logic_error("a second image");
  g_image = image;
  return CallImage;
}

}  // namespace vitrell::packaging
