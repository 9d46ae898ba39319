// Makes foreign text safe to print on a terminal.
#ifndef VITRELL_CLI_PRINTABLE_H_
#define VITRELL_CLI_PRINTABLE_H_

#include <string>
#include <string_view>

namespace vitrell::cli {

// Names and keys come from files and may hold anything. Control characters, which a terminal would
// obey, and bytes that are not UTF-8 become "\x1b"; a line feed stays where `lines` is true.
std::string Printable(std::string_view text, bool lines = false);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_PRINTABLE_H_
