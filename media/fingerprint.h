// What a frame was made of, kept with it, so that a later run knows whether it can stay.
//
// Input and layer are told by their contents and not by size and date, which copying changes and
// which need not change when a file does.
#ifndef VITRELL_MEDIA_FINGERPRINT_H_
#define VITRELL_MEDIA_FINGERPRINT_H_

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "media/sequence.h"

namespace vitrell::media {

struct Fingerprint {
  std::string effect;    // and its version
  std::string input;     // hash of the file
  std::string layer;     // likewise; empty for none
  std::string settings;  // hash of all values at the frame and all options that change the file
  // Where the files were, seen from the frame's folder. Not compared: a shot may move.
  std::string inputFile;
  std::string layerFile;

  // As JSON. A text that is none gives nothing.
  std::string Text() const;
  static std::optional<Fingerprint> Parse(std::string_view text);
  bool IsMadeOfSame(const Fingerprint& other) const;
};

// Sixteen hexadecimal digits, the same on every machine.
std::string HashOfText(std::string_view text);
// Of the contents. Throws Failure if the file cannot be read.
std::string HashOfFile(const std::filesystem::path& file);

// The attribute in the headers of frames.
inline constexpr const char* kFingerprintAttribute = "vitrellFingerprint";
// Whether frames of this name have a place for it: PNG and EXR.
bool HoldsFingerprint(const std::filesystem::path& frame);

// For the others: a JSON file beside the frames, one line for each, which several processes may add
// to at the same time.
class Sidecar {
 public:
  // "look.dpx.vitrell.json" for "look.####.dpx".
  explicit Sidecar(const Sequence& frames);

  const std::filesystem::path& File() const { return file_; }
  // What was written last for this frame; nothing if its contents have changed since. Frames that
  // others added after the first question are not seen.
  std::optional<Fingerprint> Find(const std::filesystem::path& frame);
  // After the frame took its name. Throws Failure (try later).
  void Put(const std::filesystem::path& frame, const Fingerprint& fingerprint);

 private:
  struct Entry {
    std::string fingerprint;
    std::string content;
  };

  std::filesystem::path file_;
  std::optional<std::map<std::string, Entry>> entries_;  // nothing: not read yet
};

// The frame's own fingerprint, or that in the sidecar. Nothing if there is none.
std::optional<Fingerprint> FindFingerprint(const std::filesystem::path& frame, Sidecar& sidecar);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_FINGERPRINT_H_
