// The colour names of CSS.
#ifndef VITRELL_LOOK_COLOUR_NAMES_H_
#define VITRELL_LOOK_COLOUR_NAMES_H_

#include <cstdint>
#include <optional>
#include <string_view>

namespace vitrell::look {

// The colour of a name in lower case, as 0xrrggbb.
std::optional<uint32_t> FindNamedColour(std::string_view name);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_COLOUR_NAMES_H_
