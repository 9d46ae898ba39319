// A record of what a frame was rendered from, so that a later run can tell whether it is up to
// date.
//
// Input and layer are identified by a hash of their contents. Size and date would not do: copying
// changes the date, and a file may change without either.
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
  // Paths of the files relative to the frame's folder. Not compared, since a shot may be moved.
  std::string inputFile;
  std::string layerFile;

  // As JSON. Nothing for text that is not such JSON.
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
// Whether the format of this file name can hold it in its header: PNG and EXR.
bool HoldsFingerprint(const std::filesystem::path& frame);

// For all other formats: a JSON file beside the frames with one line for each. Several processes
// may append to it at the same time. One video counts as one frame.
class Sidecar {
 public:
  // "look.dpx.vitrell.json" for "look.####.dpx".
  explicit Sidecar(const Sequence& frames);
  // "out.mov.vitrell.json" for the video "out.mov".
  explicit Sidecar(const std::filesystem::path& video);

  const std::filesystem::path& File() const { return file_; }
  // The last entry of this frame; nothing if the frame's contents have changed since. The file is
  // read once: entries that other processes add later are not seen.
  std::optional<Fingerprint> Find(const std::filesystem::path& frame);
  // To be called once the frame has its final name. Throws Failure (try later).
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
