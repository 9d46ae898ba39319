// Goldens recorded by the build for machines that have neither the command line nor its libraries:
// settings, inputs, and the output of this system's module.
#ifndef VITRELL_WHOLE_GOLDEN_RECORD_H_
#define VITRELL_WHOLE_GOLDEN_RECORD_H_

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "headless/effect_host.h"
#include "literal/base/types.h"

namespace vitrell::whole {

// Of the literal renders of all goldens in order, each cut at white, on every platform.
inline constexpr std::uint64_t kAllGoldens = 0x93811D41C7914C52ULL;

// The value of one control in the unit that the host's setter takes; points in pixels.
using ControlNumbers = std::array<double, 4>;

struct GoldenRecord {
  std::string name;
  std::vector<ControlNumbers> controls;  // By the parameter's index; zeros for what has no value.
  literal::World input;
  std::optional<literal::World> custom;
  literal::World output;
  std::vector<std::string> calls;
};

// The values that a host holds at present. Points must have been set in pixels.
std::vector<ControlNumbers> ReadControls(const headless::EffectHost& host);

// Renders a record's input by a module with the record's values on one thread, and adds a test
// failure when the effect answers with an error.
GoldenRecord RenderRecord(const GoldenRecord& record,
                          std::shared_ptr<const headless::EffectModule> module);

// Channels above white become white, as in a file.
void CutAtWhite(literal::World& world);

// A file of records, for programs of the same byte order. Both throw std::runtime_error.
void WriteGoldenRecords(const std::filesystem::path& file,
                        const std::vector<GoldenRecord>& records);
std::vector<GoldenRecord> ReadGoldenRecords(const std::filesystem::path& file);

}  // namespace vitrell::whole

#endif  // VITRELL_WHOLE_GOLDEN_RECORD_H_
