// Each thread's record of the exceptions in flight, which the compiler's library would allocate
// when a thread throws for the first time, and would end the process if there were no memory: the
// very moment at which the effect throws. Here it lies in the module's thread-local section, which
// Windows sets up for every thread as it starts, or as the module is loaded.
#include <cxxabi.h>

namespace {

struct ExceptionState {
  void* caught;
  unsigned uncaught;
};

// The compiler knows no such variables on Windows and takes this one for an ordinary one; its place
// is therefore formed by hand.
__attribute__((section(".tls$"), used)) ExceptionState g_state = {nullptr, 0};

// The thread's block of this module: the table of blocks is told by the thread's own record.
ExceptionState* ThreadsOwnState() {
  ExceptionState* state = nullptr;
  __asm__(
      "movq %%gs:0x58, %0\n\t"
      "movl _tls_index(%%rip), %%ecx\n\t"
      "movq (%0, %%rcx, 8), %0\n\t"
      "leaq %P1@SECREL32(%0), %0"
      : "=&r"(state)
      : "i"(&g_state)
      : "rcx");
  return state;
}

}  // namespace

// The two functions by which the language's library finds the record.
extern "C" abi::__cxa_eh_globals* abi::__cxa_get_globals() noexcept {
  return reinterpret_cast<abi::__cxa_eh_globals*>(ThreadsOwnState());
}

extern "C" abi::__cxa_eh_globals* abi::__cxa_get_globals_fast() noexcept {
  return reinterpret_cast<abi::__cxa_eh_globals*>(ThreadsOwnState());
}
