// Refusing files.
#include "media/picture_checks.h"

#include <optional>
#include <system_error>

#include "media/failure.h"
#include "media/mapped_file.h"
#include "media/orientation.h"
#include "media/psd_lengths.h"
#include "media/sample_reading.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

// The largest layer that a host has.
constexpr int kMaxSize = 30000;

[[noreturn]] void FailFile(const fs::path& file, const std::string& cause) {
  throw Failure(kFailed, file.string() + ": " + cause);
}

void CheckLayerSize(const fs::path& file, const PictureSize& size) {
  if (size.width < 1 || size.height < 1) FailFile(file, "holds no pixels.");
  if (size.width > kMaxSize || size.height > kMaxSize) {
    FailFile(file, "is " + std::to_string(size.width) + " x " + std::to_string(size.height) +
                       " pixels; the largest layer is 30000 x 30000. Scale or crop it first.");
  }
}

}  // namespace

void FailAsNoPicture(const fs::path& file, const std::string& cause) {
  FailFile(file, "cannot be read as a picture (" + cause +
                     "). Check that the file is complete and " + FormatNames(false) + ".");
}

void FailAsDamaged(const fs::path& file, const std::string& message) {
  FailFile(file, "is damaged or incomplete (" +
                     (message.empty() ? "its pixels cannot be read" : message) +
                     "). Export or copy the picture again.");
}

void CheckReadable(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (!fs::exists(status)) {
    FailFile(file,
             status.type() == fs::file_type::not_found
                 ? "there is no such file. Check the name and the folder."
                 : "cannot be reached (" + error.message() + "). Check your right to read it.");
  }
  if (fs::is_directory(status)) FailFile(file, "is a folder. Give the name of a picture in it.");
  if (!fs::is_regular_file(status))
    FailFile(file, "is not a regular file. Copy it to a file first.");
  if (fs::file_size(file, error) == 0) {
    FailFile(file, "is empty (0 bytes). Export or copy the picture again.");
  }
}

void CheckUnopened(const fs::path& file, const Format& format, const PictureLimits& limits) {
  if (format.plugin == "psd" && !HasSoundPsdLengths(MappedFile(file).Text())) {
    FailAsDamaged(file, "a section is longer than the file");
  }
  const std::optional<PictureSize> size = PeekSize(file, format);
  if (!size) return;
  CheckLayerSize(file, *size);
  constexpr int kUsualChannels = 4;
  CheckCost(file, *size, kUsualChannels, 1, limits);
}

void CheckSpec(const Picture& picture, const PictureLimits& limits) {
  const fs::path& file = picture.file;
  const OIIO::ImageSpec& spec = picture.spec;
  if (spec.deep || spec.depth > 1) {
    FailFile(file, "holds deep or three-dimensional data. Flatten it to a plain picture first.");
  }
  // Such files store columns, which the library reads as rows of the wrong length.
  constexpr int kFirstTurned = 5;
  if (picture.format->plugin == "dpx" && OrientationOf(spec, *picture.format) >= kFirstTurned) {
    FailFile(file, "is stored column by column, which cannot be read. Turn it upright first.");
  }
  if (spec.nchannels < 1 || spec.width < 1 || spec.height < 1) FailFile(file, "holds no pixels.");
  const PictureSize layer{picture.Width(), picture.Height()};
  const PictureSize data{spec.width, spec.height};
  CheckLayerSize(file, layer);
  CheckCost(file, layer, spec.nchannels, SampleBytes(spec), limits);
  CheckCost(file, data, spec.nchannels, SampleBytes(spec), limits);
}

}  // namespace vitrell::media
