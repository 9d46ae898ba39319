// Results of the frames of a sequence.
#ifndef VITRELL_CLI_SEQUENCE_TALLY_H_
#define VITRELL_CLI_SEQUENCE_TALLY_H_

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "cli/frame_job.h"
#include "cli/gathered_frames.h"
#include "cli/notes.h"

namespace vitrell::cli {

class SequenceTally {
 public:
  // With `reports` the frames' own reports are kept, which takes memory for each frame.
  explicit SequenceTally(bool reports) : reports_(reports) {}

  // The notes that were not told for an earlier frame, as they are told: with the names of the
  // sequences in place of those of the frame's files.
  std::vector<Note> Add(const FrameJob& job, const FrameAnswer& answer,
                        const std::vector<std::pair<std::string, std::string>>& names);
  // Frames that got no job.
  void AddMissing(std::int64_t frame);
  void AddNotBegun(std::int64_t frame) { notBegun_.Add(frame); }
  // A note about all of them.
  void AddNote(const Note& note) { notes_[{note.kind, note.text}]; }

  std::int64_t Rendered() const { return rendered_; }
  std::int64_t Skipped() const { return skipped_; }
  bool AnyFailed() const { return !failed_.IsEmpty(); }
  // 0 if none failed; 75 if every failure is temporary.
  int ExitCode() const;
  // "1005 torn, 1007-1009 stale": those that were there and had to be rendered again.
  std::string RenderedAgain() const;
  // "3 of 240 frames failed: 1005,1010-1011."
  std::string Summary(std::int64_t frames) const;
  // The report of all of them. A width or height of 0 was never known.
  std::string ReportAsJson(int exitCode, const std::string& error, int jobs, int threads,
                           double seconds) const;

 private:
  using NoteKey = std::pair<NoteKind, std::string>;

  bool reports_;
  std::int64_t rendered_ = 0;
  std::int64_t skipped_ = 0;
  GatheredFrames failed_;
  std::map<std::string, GatheredFrames> again_;
  GatheredFrames cancelled_;
  GatheredFrames notBegun_;
  bool allUsage_ = true;
  bool allLater_ = true;
  std::map<NoteKey, GatheredFrames> notes_;
  std::vector<std::pair<std::int64_t, std::string>> frameReports_;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_SEQUENCE_TALLY_H_
