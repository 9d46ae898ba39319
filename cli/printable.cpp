// Escaping control characters.
#include "cli/printable.h"

#include <array>
#include <cstdint>

namespace vitrell::cli {
namespace {

// The length of the UTF-8 character at the start; 0 for bytes that are none.
std::size_t CharacterLength(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<uint8_t>(text[i]); };
  const std::size_t length = byte(0) < 0x80              ? 1
                             : (byte(0) & 0xe0U) == 0xc0 ? 2
                             : (byte(0) & 0xf0U) == 0xe0 ? 3
                             : (byte(0) & 0xf8U) == 0xf0 ? 4
                                                         : 0;
  if (length > text.size() || (length > 1 && byte(0) < 0xc2)) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xc0U) != 0x80) return 0;
  }
  return length;
}

// Of ASCII, or of the second set (U+0080 to U+009F), which terminals obey, too.
bool IsControl(std::string_view character) {
  const auto first = static_cast<uint8_t>(character[0]);
  if (character.size() == 1) return first < 0x20 || first == 0x7f;
  return first == 0xc2 && static_cast<uint8_t>(character[1]) < 0xa0;
}

void AppendEscaped(std::string_view bytes, std::string& text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (const char byte : bytes) {
    const auto value = static_cast<uint8_t>(byte);
    text += "\\x";
    text += kDigits[value >> 4U];
    text += kDigits[value & 15U];
  }
}

}  // namespace

std::string Printable(std::string_view text, bool lines) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    const std::string_view character = text.substr(0, length == 0 ? 1 : length);
    const bool kept = length > 0 && (!IsControl(character) || (lines && character == "\n"));
    if (kept) {
      shown += character;
    } else {
      AppendEscaped(character, shown);
    }
    text.remove_prefix(character.size());
  }
  return shown;
}

}  // namespace vitrell::cli
