// The sample picture's random numbers: integer arithmetic, so that every machine draws the same.
#ifndef VITRELL_TOOLS_SAMPLE_PICTURE_RANDOM_H_
#define VITRELL_TOOLS_SAMPLE_PICTURE_RANDOM_H_

#include <cmath>
#include <cstdint>

namespace vitrell::sample {

// A 32-bit hash of the arguments.
constexpr std::uint32_t Hash(std::int32_t x, std::int32_t y, std::uint32_t seed) {
  std::uint32_t h = static_cast<std::uint32_t>(x) * 0x9E3779B1U;
  h ^= static_cast<std::uint32_t>(y) * 0x85EBCA77U + seed * 0xC2B2AE3DU;
  h ^= h >> 15;
  h *= 0x2C1B3C6DU;
  h ^= h >> 12;
  h *= 0x297A2D39U;
  return h ^ (h >> 15);
}

// The same hash as a number in [0, 1).
constexpr double HashUnit(std::int32_t x, std::int32_t y, std::uint32_t seed) {
  return Hash(x, y, seed) * (1.0 / 4294967296.0);
}

// A sequence of random numbers from a seed.
class Random {
 public:
  explicit constexpr Random(std::uint32_t seed) : seed_(seed) {}
  // In [0, 1).
  constexpr double Unit() { return HashUnit(count_++, 17, seed_); }
  constexpr double Between(double low, double high) { return low + (high - low) * Unit(); }
  constexpr bool Chance(double probability) { return Unit() < probability; }

 private:
  std::uint32_t seed_;
  std::int32_t count_ = 0;
};

// Smooth noise in [0, 1] with features one unit wide.
inline double Noise(double x, double y, std::uint32_t seed) {
  const double fx = std::floor(x);
  const double fy = std::floor(y);
  const auto ix = static_cast<std::int32_t>(fx);
  const auto iy = static_cast<std::int32_t>(fy);
  const double u = (x - fx) * (x - fx) * (3 - 2 * (x - fx));
  const double v = (y - fy) * (y - fy) * (3 - 2 * (y - fy));
  const double top = HashUnit(ix, iy, seed) * (1 - u) + HashUnit(ix + 1, iy, seed) * u;
  const double bottom = HashUnit(ix, iy + 1, seed) * (1 - u) + HashUnit(ix + 1, iy + 1, seed) * u;
  return top * (1 - v) + bottom * v;
}

// Four octaves of noise, in [0, 1].
inline double Clouds(double x, double y, std::uint32_t seed) {
  double sum = 0;
  double weight = 0.5;
  for (std::uint32_t octave = 0; octave < 4; ++octave) {
    sum += weight * Noise(x, y, seed + octave);
    x *= 2.03;
    y *= 2.03;
    weight *= 0.5;
  }
  return sum / 0.9375;
}

}  // namespace vitrell::sample

#endif  // VITRELL_TOOLS_SAMPLE_PICTURE_RANDOM_H_
