// Reading and writing colours.
#include "look/colour_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "look/colour_names.h"
#include "look/failure.h"
#include "look/text_pieces.h"

namespace vitrell::look {
namespace {

ColourValue ColourOf(uint32_t rgb) {
  return {static_cast<uint8_t>(rgb >> 16U), static_cast<uint8_t>(rgb >> 8U & 0xffU),
          static_cast<uint8_t>(rgb & 0xffU)};
}

// "#ff8800", or "#f80", each of whose digits stands for two.
std::optional<ColourValue> ReadHexColour(std::string_view text) {
  if ((text.size() != 7 && text.size() != 4) || text[0] != '#') return std::nullopt;
  std::string digits;
  for (const char digit : text.substr(1)) digits.append(text.size() == 4 ? 2 : 1, digit);
  uint32_t rgb = 0;
  const char* const last = digits.data() + digits.size();
  const auto [end, error] = std::from_chars(digits.data(), last, rgb, 16);
  if (error != std::errc() || end != last) return std::nullopt;
  return ColourOf(rgb);
}

std::optional<ColourValue> ReadColourName(std::string_view text) {
  const std::optional<uint32_t> rgb = FindNamedColour(Lowered(text));
  if (!rgb) return std::nullopt;
  return ColourOf(*rgb);
}

std::optional<ColourValue> ReadDecimalColour(std::string_view text) {
  std::array<uint8_t, 3> channels{};
  for (std::size_t i = 0; i < channels.size(); ++i) {
    const std::size_t comma = text.find(',');
    if ((comma == std::string_view::npos) != (i == 2)) return std::nullopt;
    const std::optional<double> number = ReadNumber(text.substr(0, comma));
    if (!number || *number < 0 || *number > 255 || *number != std::floor(*number)) {
      return std::nullopt;
    }
    channels[i] = static_cast<uint8_t>(*number);
    if (i < 2) text.remove_prefix(comma + 1);
  }
  return ColourValue{channels[0], channels[1], channels[2]};
}

}  // namespace

ColourValue ParseColour(std::string_view text) {
  const std::string_view trimmed = Trim(text);
  std::optional<ColourValue> colour = ReadHexColour(trimmed);
  if (!colour) colour = ReadDecimalColour(trimmed);
  if (!colour) colour = ReadColourName(trimmed);
  if (colour) return *colour;
  throw ValueError(
      Quoted(text) +
      " is not a colour. Give it as #ff8800 or #f80, by its CSS name such as orange, or "
      "as red, green and blue from 0 to 255 such as 255,136,0.");
}

std::string FormatColour(const ColourValue& colour) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text = "#";
  for (const uint8_t channel : {colour.red, colour.green, colour.blue}) {
    text += kDigits[channel >> 4];
    text += kDigits[channel & 15];
  }
  return text;
}

}  // namespace vitrell::look
