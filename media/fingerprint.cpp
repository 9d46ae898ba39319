// Hashes, and where they are kept.
#include "media/fingerprint.h"

#include <OpenImageIO/hash.h>
#include <OpenImageIO/imageio.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <utility>

#include "media/failure.h"
#include "media/formats.h"
#include "media/mapped_file.h"
#include "media/output_file.h"
#include "media/picture.h"
#include "media/quiet_libraries.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

constexpr std::string_view kEnd = "\n]\n";

std::string TextOf(const Json& json) {
  // File names need not be UTF-8.
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Repairs a file that was truncated: complete lines are kept.
std::string WholeLines(const fs::path& file) {
  std::ifstream stream(file);
  std::string text;
  for (std::string line; std::getline(stream, line);) {
    if (line.ends_with(',')) line.pop_back();
    if (!Json::accept(line) || !line.starts_with('{')) continue;
    text += (text.empty() ? "[\n" : ",\n") + line;
  }
  return text;
}

// Adds a line before the end of the list.
bool AddLine(int file, const fs::path& name, const std::string& line) {
  const off_t size = ::lseek(file, 0, SEEK_END);
  const off_t before = size - static_cast<off_t>(kEnd.size());
  std::array<char, kEnd.size()> end{};
  const bool whole =
      before > 0 &&
      ::pread(file, end.data(), end.size(), before) == static_cast<ssize_t>(end.size()) &&
      std::string_view(end.data(), end.size()) == kEnd;
  std::string text = whole ? "" : WholeLines(name);
  const bool first = !whole && text.empty();
  text += (first ? "[\n" : ",\n") + line + std::string(kEnd);
  if (!whole && ::ftruncate(file, 0) != 0) return false;
  return ::lseek(file, whole ? before : 0, SEEK_SET) >= 0 && WriteAll(file, text);
}

}  // namespace

std::string Fingerprint::Text() const {
  return TextOf({{"effect", effect},
                 {"input", input},
                 {"layer", layer},
                 {"settings", settings},
                 {"inputFile", inputFile},
                 {"layerFile", layerFile}});
}

std::optional<Fingerprint> Fingerprint::Parse(std::string_view text) {
  const Json json = Json::parse(text, nullptr, false);
  if (!json.is_object()) return std::nullopt;
  const auto get = [&](const char* name) {
    const auto value = json.find(name);
    return value != json.end() && value->is_string() ? value->get<std::string>() : std::string();
  };
  return Fingerprint{get("effect"),   get("input"),     get("layer"),
                     get("settings"), get("inputFile"), get("layerFile")};
}

bool Fingerprint::IsMadeOfSame(const Fingerprint& other) const {
  return effect == other.effect && input == other.input && layer == other.layer &&
         settings == other.settings;
}

std::string HashOfText(std::string_view text) {
  std::array<char, 17> digits{};
  std::snprintf(digits.data(), digits.size(), "%016llx",
                OIIO::xxhash::XXH64(text.data(), text.size(), 0));
  return digits.data();
}

std::string HashOfFile(const fs::path& file) {
  const MappedFile mapped(file);
  if (mapped.IsOpen()) return HashOfText(mapped.Text());
  std::error_code error;
  if (fs::is_regular_file(file, error) && fs::file_size(file, error) == 0) return HashOfText("");
  throw Failure(kFailed, file.string() + ": cannot be read. Check its name and your right to.");
}

bool HoldsFingerprint(const fs::path& frame) {
  const Format* const format = FormatToWrite(frame);
  return format != nullptr && (format->plugin == "png" || format->plugin == "openexr");
}

Sidecar::Sidecar(const Sequence& frames) : file_(frames.SidecarFile()) {}

Sidecar::Sidecar(const fs::path& video) : file_(video.string() + ".vitrell.json") {}

std::optional<Fingerprint> Sidecar::Find(const fs::path& frame) {
  if (!entries_) {
    entries_.emplace();
    std::ifstream stream(file_);
    for (std::string line; std::getline(stream, line);) {
      if (line.ends_with(',')) line.pop_back();
      const Json json = Json::parse(line, nullptr, false);
      if (!json.is_object() || !json.contains("frame") || !json.contains("content")) continue;
      (*entries_)[json["frame"]] = {TextOf(json["fingerprint"]), json["content"]};
    }
  }
  const auto entry = entries_->find(frame.filename().string());
  if (entry == entries_->end() || HashOfFile(frame) != entry->second.content) return std::nullopt;
  return Fingerprint::Parse(entry->second.fingerprint);
}

void Sidecar::Put(const fs::path& frame, const Fingerprint& fingerprint) {
  const std::string content = HashOfFile(frame);
  const std::string line = TextOf({{"frame", frame.filename().string()},
                                   {"content", content},
                                   {"fingerprint", Json::parse(fingerprint.Text())}});
  const int file = ::open(file_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  // Where there are no locks, a lost line costs a frame that is rendered again.
  if (file >= 0) static_cast<void>(::flock(file, LOCK_EX));
  const bool written = file >= 0 && AddLine(file, file_, line);
  const std::string cause = LastSystemError();
  if (file >= 0) ::close(file);
  if (!written) throw Failure(kTryLater, file_.string() + ": cannot be written (" + cause + ").");
}

std::optional<Fingerprint> FindFingerprint(const fs::path& frame, Sidecar& sidecar) {
  if (!HoldsFingerprint(frame)) return sidecar.Find(frame);
  const QuietLibraries quiet;
  const Format* const format = FormatOfFile(frame);
  const auto reader = format == nullptr ? nullptr : MakeReader(*format);
  OIIO::ImageSpec spec;
  if (reader == nullptr || !reader->open(frame.string(), spec, ReaderWishes())) {
    static_cast<void>(OIIO::geterror());
    return std::nullopt;
  }
  for (int part = 0; reader->seek_subimage(part, 0); ++part) {
    const std::string text(reader->spec().get_string_attribute(kFingerprintAttribute));
    if (!text.empty()) return Fingerprint::Parse(text);
  }
  return std::nullopt;
}

}  // namespace vitrell::media
