// The host calls that a render must make, as text, in their order.
#ifndef VITRELL_LITERAL_HOST_CALLS_H_
#define VITRELL_LITERAL_HOST_CALLS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "literal/render/render_driver.h"

namespace vitrell::literal {

// The time record that the host hands to the effect.
struct RenderTime {
  std::int32_t current = 0;
  std::int32_t step = 1;
  std::uint32_t scale = 30;
};

// Every call but the maths functions, for a host that refuses nothing. Worlds are named "input",
// "output", "custom" and "world1", "world2", ... in the order new_world makes them.
std::vector<std::string> ExpectedHostCalls(const RenderInputs& inputs, const RenderTime& time);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_HOST_CALLS_H_
