// What the readers of values have in common.
#ifndef VITRELL_LOOK_TEXT_PIECES_H_
#define VITRELL_LOOK_TEXT_PIECES_H_

#include <optional>
#include <string>
#include <string_view>

namespace vitrell::look {

// Without blanks and tabs at either end.
std::string_view Trim(std::string_view text);

// ASCII letters in lower case.
std::string Lowered(std::string_view text);

std::string Quoted(std::string_view text);

// The whole text, but for blanks around it, must be a finite number; it may have a plus sign.
std::optional<double> ReadNumber(std::string_view text);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_TEXT_PIECES_H_
