// Jobs and answers as bytes.
#include "cli/frame_job.h"

#include <nlohmann/json.hpp>
#include <tuple>

#include "cli/failure.h"

namespace vitrell::cli {
namespace {

// The binary form keeps strings as they are; text would have to be UTF-8.
using Json = nlohmann::json;

std::string BytesOf(const Json& json) {
  std::string bytes;
  Json::to_cbor(json, bytes);
  return bytes;
}

Json JsonOf(const std::vector<Note>& notes) {
  Json json = Json::array();
  for (const Note& note : notes) json.push_back({static_cast<int>(note.kind), note.text});
  return json;
}

std::vector<Note> NotesOf(const Json& json) {
  std::vector<Note> notes;
  for (const Json& note : json) {
    notes.push_back({static_cast<NoteKind>(note.at(0).get<int>()), note.at(1)});
  }
  return notes;
}

}  // namespace

void Fail(FrameAnswer& answer, int exitCode, const std::string& error) {
  answer.state = exitCode == kCancelled ? FrameState::kCancelled : FrameState::kFailed;
  answer.exitCode = exitCode;
  answer.error = error;
}

const char* NameOf(FrameState state) {
  switch (state) {
    case FrameState::kRendered:
      return "done";
    case FrameState::kSkipped:
      return "skipped";
    case FrameState::kFailed:
      return "failed";
    case FrameState::kCancelled:
      return "cancelled";
  }
  return "";
}

std::string Pack(const FrameJob& job) {
  return BytesOf(Json::array({job.frame, job.input, job.black, job.output, job.layer}));
}

FrameJob UnpackJob(const std::string& bytes) {
  const Json json = Json::from_cbor(bytes);
  return {json.at(0), json.at(1), json.at(2), json.at(3), json.at(4)};
}

std::string Pack(const FrameAnswer& answer) {
  return BytesOf(Json::array({answer.frame, static_cast<int>(answer.state), answer.exitCode,
                              answer.error, answer.again, answer.seconds, answer.width,
                              answer.height, answer.bits, JsonOf(answer.notes), answer.report}));
}

FrameAnswer UnpackAnswer(const std::string& bytes) {
  const Json json = Json::from_cbor(bytes);
  FrameAnswer answer;
  answer.frame = json.at(0);
  answer.state = static_cast<FrameState>(json.at(1).get<int>());
  answer.exitCode = json.at(2);
  answer.error = json.at(3);
  answer.again = json.at(4);
  answer.seconds = json.at(5);
  answer.width = json.at(6);
  answer.height = json.at(7);
  answer.bits = json.at(8);
  answer.notes = NotesOf(json.at(9));
  answer.report = json.at(10);
  return answer;
}

}  // namespace vitrell::cli
