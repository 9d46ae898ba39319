// What stands in for macOS: the functions and variables that a mapped image imports.
#ifndef VITRELL_TESTS_PACKAGING_SYSTEM_SYMBOLS_H_
#define VITRELL_TESTS_PACKAGING_SYSTEM_SYMBOLS_H_

#include <cstdint>
#include <string>
#include <vector>

namespace vitrell::packaging {

// The address of a symbol of "libSystem" or "libc++", given without the leading underscore. The
// unwinder counts as C++ runtime. Throws std::runtime_error for an unknown library or symbol.
void* SystemSymbol(const std::string& library, const std::string& name);

// Makes functions known to the unwinder of the C++ runtime, for as long as the process lives. Each
// function's record stands behind the common record that it refers to.
void RegisterCallFrames(std::vector<std::uint8_t> records);

}  // namespace vitrell::packaging

#endif  // VITRELL_TESTS_PACKAGING_SYSTEM_SYMBOLS_H_
