// Values as users type them: whatever is accepted is printed so that it reads back the same.
#include <string>
#include <string_view>

#include "cli/failure.h"
#include "cli/settings.h"
#include "cli/value_text.h"
#include "fuzz/fuzz_panel.h"

namespace vitrell::fuzz {
namespace {

void ReadOne(const cli::Control& control, std::string_view text) {
  cli::Value value;
  try {
    value = cli::ParseValue(control, text);
  } catch (const cli::ValueError& error) {
    Require(*error.what() != '\0', "refused without a message");
    return;
  }
  const std::string printed = cli::FormatValue(control, value);
  try {
    Require(cli::ParseValue(control, printed) == value, "reads back differently: " + printed);
  } catch (const cli::ValueError& error) {
    Require(false, "does not read back: " + printed + ": " + error.what());
  }
}

void ReadAssignment(std::string_view text) {
  cli::Settings settings(ThePanel());
  try {
    settings.Set(text);
  } catch (const cli::Failure& failure) {
    Require(failure.Kind() == cli::kWrongUsage, "fails as something else than wrong usage");
    Require(settings.Values() == cli::Settings(ThePanel()).Values(), "refused, but changed");
  }
}

}  // namespace
}  // namespace vitrell::fuzz

// The bytes are a value of every control, and a whole NAME=VALUE.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const vitrell::cli::Control& control : vitrell::fuzz::ThePanel().controls) {
    vitrell::fuzz::ReadOne(control, text);
  }
  vitrell::fuzz::ReadAssignment(text);
  return 0;
}
