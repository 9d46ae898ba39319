// One whole render as a pure function: from the input picture and the settings to the output.
#ifndef VITRELL_LITERAL_RENDER_RENDER_DRIVER_H_
#define VITRELL_LITERAL_RENDER_RENDER_DRIVER_H_

#include <cstdint>

#include "literal/base/types.h"

namespace vitrell::literal {

// Flag of a deep world's record.
inline constexpr std::int32_t kDeepWorld = 1;

// Flag that asks the host's new_world for a deep world. Bit 1, which in a record means writeable.
inline constexpr std::int32_t kNewDeepWorld = 2;

// All that decides a render's outcome.
struct RenderInputs {
  World input;                    // With the extent hint that the host gives.
  World output;                   // As handed over: size, depth, extent hint, old pixels.
  const World* custom = nullptr;  // The checked-out layer; null when there is none.
  std::int32_t customFlags = 0;   // Its record's world_flags.
  Settings settings;              // customLayer is not read.
  Maths maths{};
  bool newWorldDeep = false;  // Depth of the worlds that new_world makes when not asked for deep.
  std::int32_t newWorldExtraFlags = 0;  // Set in the records of new worlds beside the depth.
  Pixel fresh;                          // What a new world holds.
};

struct RenderOutcome {
  std::int32_t error = 0;
  World output;
  Rect inputExtent;  // The input's extent hint afterwards.
};

// What the driver decides from the settings before it runs the stages.
struct Plan {
  bool lightness = false;
  bool color = false;
  bool chromatic = false;
  bool blendBeforeLens = false;
  bool lensIsCopy = false;
  bool useBlurMap = false;
  double blurMapAmount = 0;
  bool mappedBlurs = false;
};

Plan MakePlan(const Settings& settings);

// Whether new_world gives a deep world for these creation flags.
bool NewWorldIsDeep(std::int32_t flags, bool newWorldDeep);

// The host's copy between worlds of the same size; between depths white goes to white, rounded to
// nearest, and what lies above white becomes white.
void HostCopy(const World& from, World& to);

RenderOutcome Render(const RenderInputs& inputs);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_RENDER_RENDER_DRIVER_H_
