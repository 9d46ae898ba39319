// Writing the report.
#include "cli/report.h"

#include <cstdio>
#include <ctime>
#include <nlohmann/json.hpp>

#include "cli/failure.h"
#include "media/output_file.h"
#include "media/standard_streams.h"

namespace vitrell::cli {
namespace {

using OrderedJson = nlohmann::ordered_json;

const char* ResultName(const Report& report) {
  if (report.exitCode == kCancelled || report.exitCode == kTerminated) return "cancelled";
  if (report.exitCode != kDone) return "failed";
  if (report.skipped) return "skipped";
  return report.dryRun ? "dry run" : "done";
}

OrderedJson JsonOf(const PictureFacts& facts) {
  const OIIO::ImageSpec& spec = facts.spec;
  const int bits =
      spec.get_int_attribute("oiio:BitsPerSample", static_cast<int>(8 * spec.format.size()));
  return {{"file", facts.file},    {"format", facts.format},        {"width", spec.width},
          {"height", spec.height}, {"channels", spec.channelnames}, {"type", spec.format.c_str()},
          {"bits", bits}};
}

OrderedJson JsonOf(const VideoFacts& facts) {
  return {{"file", facts.file},          {"format", facts.container},
          {"codec", facts.codec},        {"pixelFormat", facts.pixelFormat},
          {"width", facts.width},        {"height", facts.height},
          {"frameRate", facts.frameRate}};
}

OrderedJson TextsOf(const std::vector<Note>& notes, bool complaints) {
  OrderedJson texts = OrderedJson::array();
  for (const Note& note : notes) {
    if ((note.kind == NoteKind::kComplaint) != complaints) continue;
    if (complaints) {
      texts.push_back(note.text);
    } else {
      texts.push_back(
          {{"kind", note.kind == NoteKind::kLoss ? "loss" : "advice"}, {"text", note.text}});
    }
  }
  return texts;
}

}  // namespace

double StepClock::Lap() {
  const Clock::time_point now = Clock::now();
  const double seconds = std::chrono::duration<double>(now - lap_).count();
  lap_ = now;
  return seconds;
}

double StepClock::Total() const {
  return std::chrono::duration<double>(Clock::now() - start_).count();
}

double ProcessorSeconds() {
  return static_cast<double>(std::clock()) / static_cast<double>(CLOCKS_PER_SEC);
}

std::string ReportAsJson(const Report& report, const std::vector<Note>& notes) {
  OrderedJson json = {{"program", "vitrell " VITRELL_VERSION},
                      {"result", ResultName(report)},
                      {"exitCode", report.exitCode}};
  if (!report.error.empty()) json["error"] = report.error;
  if (report.pages) json["pages"] = *report.pages;
  if (report.input) json["input"] = JsonOf(*report.input);
  if (report.layer) json["customLayer"] = JsonOf(*report.layer);
  if (report.output) json["output"] = JsonOf(*report.output);
  if (report.videoInput) {
    json["input"] = JsonOf(*report.videoInput);
    json["frames"] = report.frames;
  }
  if (report.videoOutput) json["output"] = JsonOf(*report.videoOutput);
  json["effect"] = {{"bits", report.effectBits}, {"threads", report.threads}};
  if (report.jobs > 0) json["effect"]["jobs"] = report.jobs;
  json["seconds"] = {{"read", report.readSeconds},
                     {"effect", report.effectSeconds},
                     {"write", report.writeSeconds},
                     {"total", report.totalSeconds}};
  json["processorSeconds"] = {{"effect", report.effectProcessorSeconds},
                              {"total", ProcessorSeconds()}};
  json["notes"] = TextsOf(notes, false);
  json["complaints"] = TextsOf(notes, true);
  // File names need not be UTF-8.
  return json.dump(2, ' ', false, OrderedJson::error_handler_t::replace) + "\n";
}

void PutReport(const Report& report, const std::string& target, Notes& notes) {
  const std::string text = ReportAsJson(report, notes.All());
  if (media::IsStandardStream(target)) {
    std::fputs(text.c_str(), stdout);
    return;
  }
  for (const std::string& notice : media::WriteTextFile(target, text)) notes.Advise(notice);
}

}  // namespace vitrell::cli
