// Counting frames, and telling of them together.
#include "cli/sequence_tally.h"

#include <nlohmann/json.hpp>

#include "cli/failure.h"

namespace vitrell::cli {
namespace {

using OrderedJson = nlohmann::ordered_json;

std::string ReplaceAll(std::string text, const std::string& from, const std::string& to) {
  if (from.empty()) return text;
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

const char* NameOf(NoteKind kind) {
  if (kind == NoteKind::kComplaint) return "complaint";
  return kind == NoteKind::kLoss ? "loss" : "advice";
}

const char* ResultName(int exitCode) {
  if (exitCode == kCancelled || exitCode == kTerminated) return "cancelled";
  return exitCode == 0 ? "done" : "failed";
}

}  // namespace

std::vector<Note> SequenceTally::Add(
    const FrameJob& job, const FrameAnswer& answer,
    const std::vector<std::pair<std::string, std::string>>& names) {
  rendered_ += answer.state == FrameState::kRendered ? 1 : 0;
  skipped_ += answer.state == FrameState::kSkipped ? 1 : 0;
  if (answer.state == FrameState::kCancelled) cancelled_.Add(job.frame);
  if (answer.state == FrameState::kFailed) {
    failed_.Add(job.frame);
    allUsage_ = allUsage_ && answer.exitCode == kWrongUsage;
    allLater_ = allLater_ && answer.exitCode == kTryLater;
  }
  if (answer.state == FrameState::kRendered && !answer.again.empty()) {
    again_[answer.again].Add(job.frame);
  }
  if (reports_ && !answer.report.empty()) frameReports_.emplace_back(job.frame, answer.report);
  std::vector<Note> fresh;
  for (Note note : answer.notes) {
    for (const auto& [file, sequence] : names) note.text = ReplaceAll(note.text, file, sequence);
    const auto [entry, isNew] = notes_.try_emplace({note.kind, note.text});
    entry->second.Add(job.frame);
    if (isNew) fresh.push_back(note);
  }
  return fresh;
}

void SequenceTally::AddMissing(std::int64_t frame) {
  failed_.Add(frame);
  allUsage_ = allLater_ = false;
}

int SequenceTally::ExitCode() const {
  if (failed_.IsEmpty()) return kDone;
  if (allLater_) return kTryLater;
  return allUsage_ && rendered_ + skipped_ == 0 ? kWrongUsage : kFailed;
}

std::string SequenceTally::RenderedAgain() const {
  std::string text;
  for (const auto& [why, frames] : again_) {
    text += (text.empty() ? "" : ", ") + frames.Text() + " " + why;
  }
  return text;
}

std::string SequenceTally::Summary(std::int64_t frames) const {
  std::string text;
  if (!failed_.IsEmpty()) {
    text = std::to_string(failed_.Size()) + " of " + std::to_string(frames) +
           " frames failed: " + failed_.Text() + ".";
  }
  GatheredFrames rest = cancelled_;
  rest.AddAll(notBegun_);
  if (!rest.IsEmpty()) {
    text += (text.empty() ? "" : " ") + std::to_string(rest.Size()) +
            " frames are left: " + rest.Text() + ".";
  }
  return text;
}

std::string SequenceTally::ReportAsJson(int exitCode, const std::string& error, int jobs,
                                        int threads, double seconds) const {
  OrderedJson json = {{"program", "vitrell " VITRELL_VERSION},
                      {"result", ResultName(exitCode)},
                      {"exitCode", exitCode}};
  if (!error.empty()) json["error"] = error;
  json["frames"] = {{"rendered", rendered_},          {"skipped", skipped_},
                    {"again", RenderedAgain()},       {"failed", failed_.Text()},
                    {"cancelled", cancelled_.Text()}, {"notBegun", notBegun_.Text()}};
  json["effect"] = {{"jobs", jobs}, {"threads", threads}};
  json["seconds"] = {{"total", seconds}};
  json["notes"] = OrderedJson::array();
  for (const auto& [note, frames] : notes_) {
    json["notes"].push_back(
        {{"kind", NameOf(note.first)}, {"text", note.second}, {"frames", frames.Text()}});
  }
  json["each"] = OrderedJson::array();
  for (const auto& [frame, report] : frameReports_) {
    OrderedJson one = {{"frame", frame}};
    one.update(OrderedJson::parse(report));
    one.erase("program");
    json["each"].push_back(one);
  }
  // File names need not be UTF-8.
  return json.dump(2, ' ', false, OrderedJson::error_handler_t::replace) + "\n";
}

}  // namespace vitrell::cli
