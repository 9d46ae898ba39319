// What a render tells beside its result.
#ifndef VITRELL_CLI_NOTES_H_
#define VITRELL_CLI_NOTES_H_

#include <string>
#include <vector>

#include "cli/progress_bar.h"
#include "media/standard_streams.h"

namespace vitrell::cli {

// Writes notes to standard error, one line each, and keeps them out of the progress line's way.
class Notes {
 public:
  Notes(bool quiet, ProgressBar& bar) : quiet_(quiet), bar_(bar) {}

  // From now on the input is named as people know it.
  void NameInput(const media::InputFile& input) { input_ = &input; }

  void Tell(const std::string& note);
  void TellAll(const std::vector<std::string>& notes);

 private:
  bool quiet_;
  ProgressBar& bar_;
  const media::InputFile* input_ = nullptr;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_NOTES_H_
