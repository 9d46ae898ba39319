// Telling what became of a sequence.
#include "cli/sequence_ending.h"

#include <csignal>
#include <cstdio>

#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/printable.h"
#include "media/output_file.h"
#include "media/standard_streams.h"

namespace vitrell::cli {
namespace {

void WriteReport(const SequenceEnding& ending, int exitCode, const std::string& error) {
  const RenderArguments& arguments = ending.arguments;
  if (arguments.report.empty()) return;
  const std::string text =
      ending.tally.ReportAsJson(exitCode, error, ending.jobs, arguments.threads, ending.seconds);
  if (media::IsStandardStream(arguments.report)) {
    std::fputs(text.c_str(), stdout);
  } else {
    media::WriteTextFile(arguments.report, text);
  }
}

void TellResult(const SequenceEnding& ending) {
  const RenderArguments& arguments = ending.arguments;
  const SequenceTally& tally = ending.tally;
  if (arguments.quiet) return;
  std::string text = std::to_string(tally.Rendered()) + " frames rendered";
  if (arguments.dryRun) text = std::to_string(tally.Rendered()) + " frames checked";
  if (tally.Skipped() > 0) text += ", " + std::to_string(tally.Skipped()) + " skipped";
  const double rate =
      ending.seconds > 0 ? static_cast<double>(tally.Rendered()) / ending.seconds : 0;
  const std::string again = tally.RenderedAgain();
  if (!again.empty()) text += " (again: " + again + ")";
  std::fprintf(media::IsStandardStream(arguments.report) ? stderr : stdout,
               "%s: %s, %.3f s (%.3g frames/s)%s\n", Printable(arguments.output).c_str(),
               text.c_str(), ending.seconds, rate,
               arguments.dryRun ? ", dry run, nothing was written" : "");
}

}  // namespace

void EndSequence(const SequenceEnding& ending) {
  const RenderArguments& arguments = ending.arguments;
  const SequenceTally& tally = ending.tally;
  int exitCode = tally.ExitCode();
  std::string error = tally.Summary(ending.frames);
  if (!ending.shortage.empty()) {
    if (exitCode == kDone) exitCode = kFailed;
    error = ending.shortage + (error.empty() ? "" : " " + error);
  }
  if (CaughtSignals() > 0) {
    exitCode = FirstSignal() == SIGTERM ? kTerminated : kCancelled;
    error = "cancelled. " + error + " The same command with --existing skip goes on.";
  } else if (ending.savePreset && tally.Rendered() > 0 && !arguments.savePreset.empty() &&
             !arguments.dryRun) {
    ending.savePreset();
  }
  WriteReport(ending, exitCode, error);
  TellResult(ending);
  if (exitCode != kDone) throw Failure(static_cast<media::FailureKind>(exitCode), error);
}

bool MayReplaceFrames(const RenderArguments& arguments) {
  const std::string& existing = arguments.frames.existing;
  return existing.empty() ? arguments.force : existing != "fail";
}

void RefuseExisting(const RenderArguments& arguments, const std::string& existing) {
  if (existing.empty()) return;
  throw Failure(kFailed, arguments.output + ": frames " + existing +
                             " already exist. Add --existing skip to render the others, or "
                             "--existing overwrite.");
}

}  // namespace vitrell::cli
