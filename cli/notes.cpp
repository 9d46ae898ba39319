// Telling notes.
#include "cli/notes.h"

#include <algorithm>
#include <cstdio>

#include "cli/failure.h"
#include "cli/printable.h"

namespace vitrell::cli {

void Notes::Add(NoteKind kind, const std::string& note) {
  const std::string shown = input_ == nullptr ? note : input_->Shown(note);
  // Pages of one file repeat the same notes.
  const bool told = std::any_of(notes_.begin(), notes_.end(), [&](const Note& one) {
    return one.kind == kind && one.text == shown;
  });
  if (told) return;
  notes_.push_back({kind, shown});
  if (quiet_ || (strict_ && kind != NoteKind::kAdvice)) return;
  bar_.Wipe();
  std::fprintf(stderr, "vitrell: note: %s\n", Printable(shown).c_str());
}

void Notes::TellAll(const std::vector<std::string>& notes) {
  for (const std::string& note : notes) Tell(note);
}

void Notes::Add(const std::vector<Note>& notes) {
  for (const Note& note : notes) Add(note.kind, note.text);
}

void Notes::FailIfStrict() const {
  if (!strict_) return;
  std::string losses;
  for (const Note& note : notes_) {
    if (note.kind != NoteKind::kAdvice) losses += " " + note.text;
  }
  if (losses.empty()) return;
  throw Failure(kFailed, "--strict:" + losses + " No picture was written.");
}

}  // namespace vitrell::cli
