// Values as users type them: whatever is accepted is printed so that it reads back the same.
#include <string>
#include <string_view>

#include "fuzz/fuzz_panel.h"
#include "look/animation_text.h"
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

void ReadKeys(const look::Control& control, std::string_view text) {
  if (!look::HoldsKeys(control, text)) return;
  look::Keys keys;
  try {
    keys = look::ParseKeys(control, text);
  } catch (const look::ValueError& error) {
    Require(*error.what() != '\0', "refused without a message");
    return;
  }
  const std::string printed = look::FormatKeys(control, keys);
  try {
    Require(look::ParseKeys(control, printed) == keys, "reads back differently: " + printed);
    const look::Curve curve(control, keys, {25, 100});
    for (const double frame : {-1.0, 0.0, 12.5, 99.0}) {
      const std::string value = look::FormatValue(control, curve.At(frame));
      (void)look::ParseValue(control, value);
    }
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

// The bytes are a value and keys of every control, and a whole NAME=VALUE.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const vitrell::look::Control& control : vitrell::fuzz::ThePanel().controls) {
    vitrell::fuzz::ReadOne(control, text);
    vitrell::fuzz::ReadKeys(control, text);
  }
  vitrell::fuzz::ReadAssignment(text);
  return 0;
}
