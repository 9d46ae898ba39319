// What the generated source of a stand-in consists of; CMakeLists.txt here tells what it is for.
#ifndef VITRELL_MEDIA_STAND_INS_STAND_IN_H_
#define VITRELL_MEDIA_STAND_INS_STAND_IN_H_

#include <unistd.h>

#include <cstddef>
#include <cstdlib>

namespace vitrell::media {

// Tells which function was called and ends the program: the file formats whose code calls these
// functions are not among those that are opened.
template <std::size_t length>
[[noreturn]] void EndAtMissingFunction(const char (&message)[length]) {
  static_cast<void>(::write(STDERR_FILENO, message, length - 1));
  std::abort();
}

}  // namespace vitrell::media

// A function or an object under the name that the library gives it in its symbol table. An object
// is large enough for what is asked for by address: strings.
#define STAND_IN_FUNCTION(number, symbol)                                                        \
  extern "C" __attribute__((visibility("default"))) void StandIn##number() __asm__(symbol);      \
  void StandIn##number() {                                                                       \
    vitrell::media::EndAtMissingFunction("A library was called that is left out: " symbol "\n"); \
  }
#define STAND_IN_IDLE_FUNCTION(number, symbol)                                              \
  extern "C" __attribute__((visibility("default"))) void StandIn##number() __asm__(symbol); \
  void StandIn##number() {}
#define STAND_IN_OBJECT(number, symbol)                      \
  extern "C" {                                               \
  __attribute__((visibility("default")))                     \
  std::max_align_t StandIn##number[16] __asm__(symbol) = {}; \
  }

#endif  // VITRELL_MEDIA_STAND_INS_STAND_IN_H_
