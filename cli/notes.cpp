// Telling notes.
#include "cli/notes.h"

#include <cstdio>

#include "cli/printable.h"

namespace vitrell::cli {

void Notes::Tell(const std::string& note) {
  if (quiet_) return;
  bar_.Wipe();
  const std::string shown = input_ == nullptr ? note : input_->Shown(note);
  std::fprintf(stderr, "vitrell: note: %s\n", Printable(shown).c_str());
}

void Notes::TellAll(const std::vector<std::string>& notes) {
  for (const std::string& note : notes) Tell(note);
}

}  // namespace vitrell::cli
