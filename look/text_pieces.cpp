// Pieces of values.
#include "look/text_pieces.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

namespace vitrell::look {

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string Lowered(std::string_view text) {
  std::string lowered(text);
  std::transform(lowered.begin(), lowered.end(), lowered.begin(),
                 [](char c) { return static_cast<char>(std::tolower(c & 0xff)); });
  return lowered;
}

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::optional<double> ReadNumber(std::string_view text) {
  text = Trim(text);
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) {
    return std::nullopt;
  }
  return number;
}

}  // namespace vitrell::look
