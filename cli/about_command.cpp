// `vitrell about`.
#include <algorithm>
#include <cstdio>
#include <string>

#include "cli/commands.h"
#include "cli/effect_finder.h"
#include "cli/printable.h"

namespace vitrell::cli {

void RunAbout(const EffectArguments& arguments) {
  std::string text = OpenEffect(arguments.effect)->About();
  // The effect separates its name from the text by a carriage return.
  std::replace(text.begin(), text.end(), '\r', '\n');
  std::printf("%s\n", Printable(text, true).c_str());
}

}  // namespace vitrell::cli
