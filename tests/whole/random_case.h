// One random render: pictures, parameters and host options, all from one seed.
#ifndef VITRELL_WHOLE_RANDOM_CASE_H_
#define VITRELL_WHOLE_RANDOM_CASE_H_

#include <cstdint>
#include <optional>
#include <string>

#include "headless/effect_host.h"

namespace vitrell::whole {

struct RandomCase {
  std::uint64_t seed = 0;
  headless::WorldBuffer input;
  headless::WorldBuffer output;
  std::optional<headless::WorldBuffer> custom;
  headless::RenderOptions options;
};

// Builds the case and sets all of the host's parameters for it. The cost of a case is bounded:
// large amounts meet small pictures.
RandomCase MakeRandomCase(std::uint64_t seed, headless::EffectHost& host);

// The seed, the pictures' shapes and every parameter that differs from its default.
std::string Describe(const RandomCase& randomCase, const headless::EffectHost& host);

// The base seed: VITRELL_SEED, else the given one.
std::uint64_t BaseSeed(std::uint64_t fallback);
// How many cases: VITRELL_RANDOM_RENDERS, else the given number.
int CaseCount(int fallback);

}  // namespace vitrell::whole

#endif  // VITRELL_WHOLE_RANDOM_CASE_H_
