// Notes that a render prints besides its result.
#ifndef VITRELL_CLI_NOTES_H_
#define VITRELL_CLI_NOTES_H_

#include <string>
#include <vector>

#include "cli/progress_bar.h"
#include "media/standard_streams.h"

namespace vitrell::cli {

enum class NoteKind {
  kLoss,       // something of the pictures or files is not kept
  kComplaint,  // the effect broke a rule of its host
  kAdvice,     // nothing is lost, but the result may not be what was meant
};

struct Note {
  NoteKind kind = NoteKind::kLoss;
  std::string text;
};

// Writes notes to standard error, each once and in one line, and keeps them out of the progress
// line's way.
// With `strict` losses and complaints wait for FailIfStrict instead.
class Notes {
 public:
  Notes(bool quiet, bool strict, ProgressBar& bar) : quiet_(quiet), strict_(strict), bar_(bar) {}

  // From now on notes use the name of the input that the user gave.
  void NameInput(const media::InputFile& input) { input_ = &input; }

  // A loss.
  void Tell(const std::string& note) { Add(NoteKind::kLoss, note); }
  void TellAll(const std::vector<std::string>& notes);
  void Complain(const std::string& note) { Add(NoteKind::kComplaint, note); }
  void Advise(const std::string& note) { Add(NoteKind::kAdvice, note); }
  // Those that another process noted.
  void Add(const std::vector<Note>& notes);

  // With `strict` throws Failure over all losses and complaints until now, if there are any.
  void FailIfStrict() const;

  const std::vector<Note>& All() const { return notes_; }

 private:
  void Add(NoteKind kind, const std::string& note);

  bool quiet_;
  bool strict_;
  ProgressBar& bar_;
  const media::InputFile* input_ = nullptr;
  std::vector<Note> notes_;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_NOTES_H_
