// A picture as its file holds it, with all that the output must keep.
#ifndef VITRELL_MEDIA_PICTURE_H_
#define VITRELL_MEDIA_PICTURE_H_

#include <OpenImageIO/half.h>
#include <OpenImageIO/imageio.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "media/failure.h"
#include "media/formats.h"
#include "media/picture_limits.h"

namespace vitrell::media {

// Samples of all channels, interleaved, rows from top to bottom without padding. 8-bit and 16-bit
// integers and half floats stay what they are in the file; every other type is held as float.
using Samples = std::variant<std::vector<uint8_t>, std::vector<uint16_t>, std::vector<half>,
                             std::vector<float>>;

// Which channel of the file is which. Channels beyond these are kept but not seen by the effect.
struct ChannelLayout {
  int red = 0;
  int green = 0;
  int blue = 0;
  int alpha = -1;  // -1: none, everything is opaque

  bool IsGrey() const { return red == green && green == blue; }
  bool HasAlpha() const { return alpha >= 0; }
};

// A rectangle of pixels; Right and Bottom are the first beyond it.
struct Window {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  int Right() const { return x + width; }
  int Bottom() const { return y + height; }
  bool operator==(const Window&) const = default;
};
struct Metadata;

// What tells the samples of a picture again that are not in memory any more, beside the pixels that
// the effect was given; see OriginalRows.
struct ReleasedSamples {
  // One for each sample, rows in whole words: whether it is another than its value usually stands
  // for. Empty where none can be.
  std::vector<uint64_t> others;
  // Of half floats these others, row by row, and where each row begins.
  std::vector<half> halves;
  std::vector<std::size_t> firstOfRow;
};

struct Picture {
  std::filesystem::path file;
  const Format* format = nullptr;
  int part = 0;  // of the file's pictures, which of them this is
  bool hasOtherParts = false;
  bool hasLevels = false;  // smaller copies beside it (mip levels)
  OIIO::ImageSpec spec;    // as in the file
  ChannelLayout layout;
  bool straight = true;  // colours are not multiplied by alpha; true without alpha
  Samples samples;
  std::optional<ReleasedSamples> released;   // there are no samples then
  std::shared_ptr<const Metadata> metadata;  // null: none
  std::vector<std::string> notices;

  // What the effect sees: the display window of a format that has one, otherwise all pixels.
  int Width() const { return HasFrame() ? spec.full_width : spec.width; }
  int Height() const { return HasFrame() ? spec.full_height : spec.height; }
  // Where the samples lie in it. They may leave parts of it empty, and reach beyond it.
  Window Data() const;
  // The part of the samples that the effect sees; empty if there is none.
  Window Seen() const;
  std::size_t Channels() const { return static_cast<std::size_t>(spec.nchannels); }
  // 16-bit integers and everything held as float.
  bool IsDeep() const { return !std::holds_alternative<std::vector<uint8_t>>(samples); }

 private:
  bool HasFrame() const { return format != nullptr && format->windows; }
};

// Told how much of a file is done, 0 to 1; a true answer stops the work.
using FileProgress = std::function<bool(float done)>;

// How the colours of a file stand to its alpha.
enum class AlphaMeaning {
  kAsInFile,
  kStraight,       // not multiplied by it
  kPremultiplied,  // multiplied by it
  kIgnored,        // it is a channel like any other, and the picture opaque
};

// What is wanted of a file.
struct ReadChoice {
  bool autoOrient = true;  // pixels upright, as the orientation tag tells
  std::string channels;    // see ChooseChannels; empty: as the header tells
  std::string part;        // see FindPart; empty: the first
  int page = -1;           // instead of a part, one of FindPages: nothing is told of the others
  AlphaMeaning alpha = AlphaMeaning::kAsInFile;
};

// Reads pictures of one file without colour management and without touching alpha.
class PictureReader {
 public:
  explicit PictureReader(std::filesystem::path file, const PictureLimits& limits = {})
      : file_(std::move(file)), limits_(limits) {}

  // Throws Failure naming file, cause and remedy, also when stopped. Memory is taken as rows
  // arrive, so that a header alone costs nothing. The file stays open, since readers of GIF get to
  // a frame by way of all that come before it.
  Picture Read(const FileProgress& progress, const ReadChoice& choice = {});

 private:
  Picture ReadAsItIs(const FileProgress& progress, const ReadChoice& choice);

  std::filesystem::path file_;
  PictureLimits limits_;
  std::unique_ptr<OIIO::ImageInput> input_;  // null until something was read
};

// One picture of a file, in the same way.
Picture ReadPicture(const std::filesystem::path& file, const FileProgress& progress,
                    const PictureLimits& limits = {}, const ReadChoice& choice = {});

// Makes the pixels black and, where they have alpha, opaque. All else stays.
void MakeBlack(Picture& picture);

// Passes progress on and remembers that it asked to stop.
class StoppableProgress {
 public:
  explicit StoppableProgress(const FileProgress& progress) : progress_(progress) {}

  bool Tell(float done) {
    if (progress_ && progress_(done)) stopped_ = true;
    return stopped_;
  }
  // Throws Failure (cancelled) once the work was asked to stop.
  void ThrowIfStopped() const {
    if (stopped_) throw Failure(kCancelled, "cancelled; no file was written.");
  }

 private:
  const FileProgress& progress_;
  bool stopped_ = false;
};

// For the callback arguments of the picture library; the first is a StoppableProgress.
bool CallFileProgress(void* progress, float done);

// The layout of channels told by a file's header.
ChannelLayout FindChannels(const OIIO::ImageSpec& spec);

// The format's own reader, which alone sees the file: others have crashed over foreign ones. Null
// if the picture library lacks it.
std::unique_ptr<OIIO::ImageInput> MakeReader(const Format& format);
// What a reader has to be told when it opens a file: to leave alpha as it is.
OIIO::ImageSpec ReaderWishes();

// The library's last message on one line.
std::string OneLine(std::string message);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_PICTURE_H_
