// Values as users type them: whatever is accepted is printed so that it reads back the same.
#include <string>
#include <string_view>

#include "fuzz/fuzz_panel.h"
#include "look/failure.h"
#include "look/settings.h"
#include "look/value_text.h"

namespace vitrell::fuzz {
namespace {

void ReadOne(const look::Control& control, std::string_view text) {
  look::Value value;
  try {
    value = look::ParseValue(control, text);
  } catch (const look::ValueError& error) {
    Require(*error.what() != '\0', "refused without a message");
    return;
  }
  const std::string printed = look::FormatValue(control, value);
  try {
    Require(look::ParseValue(control, printed) == value, "reads back differently: " + printed);
  } catch (const look::ValueError& error) {
    Require(false, "does not read back: " + printed + ": " + error.what());
  }
}

void ReadAssignment(std::string_view text) {
  look::Settings settings(ThePanel());
  try {
    settings.Set(text);
  } catch (const look::Failure& failure) {
    Require(failure.Kind() == look::kWrongUsage, "fails as something else than wrong usage");
    Require(settings.Values() == look::Settings(ThePanel()).Values(), "refused, but changed");
  }
}

}  // namespace
}  // namespace vitrell::fuzz

// The bytes are a value of every control, and a whole NAME=VALUE.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const vitrell::look::Control& control : vitrell::fuzz::ThePanel().controls) {
    vitrell::fuzz::ReadOne(control, text);
  }
  vitrell::fuzz::ReadAssignment(text);
  return 0;
}
