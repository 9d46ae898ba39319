// Reading pictures.
#include "media/picture.h"

#include <algorithm>
#include <array>
#include <exception>
#include <fstream>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <type_traits>

#include "media/failure.h"
#include "media/metadata.h"
#include "media/orientation.h"
#include "media/quiet_libraries.h"
#include "media/selection.h"
#include "media/trial_reading.h"
#include "media/webp_input.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

// The largest layer that a host has.
constexpr int kMaxSize = 30000;
// Formats whose files hold straight colours although the library does not say so.
constexpr std::array<std::string_view, 4> kSilentlyStraight = {"bmp", "gif", "heif", "jpeg2000"};

[[noreturn]] void Fail(const fs::path& file, const std::string& cause) {
  throw Failure(kFailed, file.string() + ": " + cause);
}

void CheckReadable(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (!fs::exists(status)) {
    Fail(file, status.type() == fs::file_type::not_found
                   ? "there is no such file. Check the name and the folder."
                   : "cannot be reached (" + error.message() + "). Check your right to read it.");
  }
  if (fs::is_directory(status)) Fail(file, "is a folder. Give the name of a picture in it.");
  if (!fs::is_regular_file(status)) Fail(file, "is not a regular file. Copy it to a file first.");
  if (fs::file_size(file, error) == 0) {
    Fail(file, "is empty (0 bytes). Export or copy the picture again.");
  }
}

[[noreturn]] void FailAsNoPicture(const fs::path& file, const std::string& cause) {
  Fail(file, "cannot be read as a picture (" + cause + "). Check that the file is complete and " +
                 FormatNames(false) + ".");
}

std::unique_ptr<OIIO::ImageInput> OpenPicture(const fs::path& file, const Format& format) {
  std::unique_ptr<OIIO::ImageInput> input = MakeReader(format);
  if (input == nullptr) FailAsNoPicture(file, OneLine(OIIO::geterror()));
  OIIO::ImageSpec spec;
  if (!input->open(file.string(), spec, ReaderWishes())) {
    FailAsNoPicture(file, OneLine(input->geterror()));
  }
  return input;
}

const Format& TellFormat(const fs::path& file) {
  const Format* format = FormatOfFile(file);
  if (format == nullptr) FailAsNoPicture(file, "its format is none of those that are read");
  return *format;
}

void CheckLayerSize(const fs::path& file, const PictureSize& size) {
  if (size.width < 1 || size.height < 1) Fail(file, "holds no pixels.");
  if (size.width > kMaxSize || size.height > kMaxSize) {
    Fail(file, "is " + std::to_string(size.width) + " x " + std::to_string(size.height) +
                   " pixels; the largest layer is 30000 x 30000. Scale or crop it first.");
  }
}

// Before the file is opened, where opening costs as much as reading.
void CheckPeekedSize(const fs::path& file, const Format& format, const PictureLimits& limits) {
  const std::optional<PictureSize> size = PeekSize(file, format);
  if (!size) return;
  CheckLayerSize(file, *size);
  constexpr int kUsualChannels = 4;
  CheckCost(file, *size, kUsualChannels, 1, limits);
}

bool IsHalf(const OIIO::ImageSpec& spec) {
  const auto isHalf = [](const OIIO::TypeDesc& type) { return type == OIIO::TypeDesc::HALF; };
  return isHalf(spec.format) &&
         std::all_of(spec.channelformats.begin(), spec.channelformats.end(), isHalf);
}

int SampleBytes(const OIIO::ImageSpec& spec) {
  if (spec.format == OIIO::TypeDesc::UINT8) return sizeof(uint8_t);
  return spec.format == OIIO::TypeDesc::UINT16 || IsHalf(spec) ? sizeof(uint16_t) : sizeof(float);
}

void CheckSpec(const Picture& picture, const PictureLimits& limits) {
  const fs::path& file = picture.file;
  const OIIO::ImageSpec& spec = picture.spec;
  if (spec.deep || spec.depth > 1) {
    Fail(file, "holds deep or three-dimensional data. Flatten it to a plain picture first.");
  }
  // Their lines are the picture's columns, which the library takes for rows of another length.
  constexpr int kFirstTurned = 5;
  if (picture.format->plugin == "dpx" && OrientationOf(spec, *picture.format) >= kFirstTurned) {
    Fail(file, "is stored column by column, which cannot be read. Turn it upright first.");
  }
  if (spec.nchannels < 1 || spec.width < 1 || spec.height < 1) Fail(file, "holds no pixels.");
  const PictureSize layer{picture.Width(), picture.Height()};
  const PictureSize data{spec.width, spec.height};
  CheckLayerSize(file, layer);
  CheckCost(file, layer, spec.nchannels, SampleBytes(spec), limits);
  CheckCost(file, data, spec.nchannels, SampleBytes(spec), limits);
}

[[noreturn]] void FailAsDamaged(const fs::path& file, const std::string& message) {
  Fail(file, "is damaged or incomplete (" +
                 (message.empty() ? "its pixels cannot be read" : message) +
                 "). Export or copy the picture again.");
}

// About 16 MiB, whole blocks of rows of every format.
int RowsAtOnce(const OIIO::ImageSpec& spec, std::size_t rowBytes) {
  constexpr std::size_t kBytes = 16 << 20;
  constexpr std::size_t kTallestBlock = 256;
  const std::size_t block =
      spec.tile_height > 0 ? static_cast<std::size_t>(spec.tile_height) : kTallestBlock;
  return static_cast<int>(block * std::max<std::size_t>(1, kBytes / (rowBytes * block)));
}

// The picture library unpacks blocks of such files by itself and overlooks those that are damaged;
// asked for one row or tile at a time, it leaves them to the TIFF library.
bool HidesDamage(const Picture& picture) {
  return picture.format->plugin == "tiff" &&
         picture.spec.get_string_attribute("compression") == "zip";
}

struct RowRange {
  int begin;
  int end;
};

bool ReadScanlines(OIIO::ImageInput& input, const Picture& picture, const RowRange& range,
                   const OIIO::TypeDesc& type, char* rows, std::size_t rowBytes) {
  if (!HidesDamage(picture)) {
    return input.read_scanlines(picture.part, 0, range.begin, range.end, 0, 0,
                                picture.spec.nchannels, type, rows);
  }
  for (int y = range.begin; y < range.end; ++y, rows += rowBytes) {
    if (!input.read_scanline(y, 0, type, rows)) return false;
  }
  return true;
}

bool ReadTiles(OIIO::ImageInput& input, const Picture& picture, const RowRange& range,
               const OIIO::TypeDesc& type, char* rows, std::size_t rowBytes) {
  const OIIO::ImageSpec& spec = picture.spec;
  const int width = HidesDamage(picture) ? spec.tile_width : spec.width;
  const int height = HidesDamage(picture) ? spec.tile_height : range.end - range.begin;
  const std::size_t pixelBytes = picture.Channels() * type.size();
  for (int y = range.begin; y < range.end; y += height) {
    for (int left = 0; left < spec.width; left += width) {
      const int x = spec.x + left;
      char* const at = rows + static_cast<std::size_t>(y - range.begin) * rowBytes +
                       static_cast<std::size_t>(left) * pixelBytes;
      if (!input.read_tiles(picture.part, 0, x, std::min(x + width, spec.x + spec.width), y,
                            std::min(y + height, range.end), 0, 1, 0, spec.nchannels, type, at,
                            static_cast<OIIO::stride_t>(pixelBytes),
                            static_cast<OIIO::stride_t>(rowBytes))) {
        return false;
      }
    }
  }
  return true;
}

bool ReadRows(OIIO::ImageInput& input, const Picture& picture, int begin, int end,
              const OIIO::TypeDesc& type, void* rows) {
  const OIIO::ImageSpec& spec = picture.spec;
  const RowRange range{spec.y + begin, spec.y + end};
  const std::size_t rowBytes =
      static_cast<std::size_t>(spec.width) * picture.Channels() * type.size();
  const auto read = spec.tile_width == 0 ? &ReadScanlines : &ReadTiles;
  return read(input, picture, range, type, static_cast<char*>(rows), rowBytes);
}

// A header may promise any number of pixels: memory is touched only for rows that came.
template <typename Sample>
Samples ReadSamples(OIIO::ImageInput& input, const Picture& picture, OIIO::TypeDesc type,
                    const FileProgress& progress) {
  const OIIO::ImageSpec& spec = picture.spec;
  const std::size_t row = static_cast<std::size_t>(spec.width) * picture.Channels();
  const int rowsAtOnce = RowsAtOnce(spec, row * sizeof(Sample));
  StoppableProgress stoppable(progress);
  std::vector<Sample> samples;
  samples.reserve(row * static_cast<std::size_t>(spec.height));
  for (int begin = 0; begin < spec.height; begin += rowsAtOnce) {
    const int end = std::min(begin + rowsAtOnce, spec.height);
    samples.resize(row * static_cast<std::size_t>(end));
    Sample* const rows = samples.data() + row * static_cast<std::size_t>(begin);
    const bool done = ReadRows(input, picture, begin, end, type, rows);
    stoppable.Tell(static_cast<float>(end) / static_cast<float>(spec.height));
    stoppable.ThrowIfStopped();
    const std::string message = OneLine(input.geterror());
    if (!done || !message.empty()) FailAsDamaged(picture.file, message);
  }
  return samples;
}

Samples ReadAllSamples(OIIO::ImageInput& input, const Picture& picture,
                       const FileProgress& progress) {
  if (picture.spec.format == OIIO::TypeDesc::UINT8) {
    return ReadSamples<uint8_t>(input, picture, OIIO::TypeDesc::UINT8, progress);
  }
  if (picture.spec.format == OIIO::TypeDesc::UINT16) {
    return ReadSamples<uint16_t>(input, picture, OIIO::TypeDesc::UINT16, progress);
  }
  if (IsHalf(picture.spec)) {
    return ReadSamples<half>(input, picture, OIIO::TypeDesc::HALF, progress);
  }
  return ReadSamples<float>(input, picture, OIIO::TypeDesc::FLOAT, progress);
}

void TellOtherParts(OIIO::ImageInput& input, Picture& picture) {
  picture.hasOtherParts = picture.part > 0 || input.seek_subimage(1, 0);
  // An EXR may be written with all of its parts.
  if (!picture.hasOtherParts || picture.format->windows) return;
  const std::string name =
      picture.part == 0 ? "the first one" : "part " + std::to_string(picture.part);
  picture.notices.push_back(
      picture.file.string() + ": holds several pictures; only " + name + " is used." +
      (picture.format->pages ? " --pages all renders all, --pages 1-3 some." : ""));
}

// PSD readers do not say what they converted; the number at this place of the header does.
bool IsCmykPsd(const fs::path& file) {
  constexpr std::size_t kMode = 25;
  constexpr char kCmyk = 4;
  std::array<char, kMode + 1> head{};
  std::ifstream stream(file, std::ios::binary);
  stream.read(head.data(), static_cast<std::streamsize>(head.size()));
  return stream.good() && head[kMode] == kCmyk;
}

// The readers turn inks into red, green and blue without the profile that tells how they look.
void TellCmyk(Picture& picture) {
  const OIIO::ImageSpec& spec = picture.spec;
  const std::string_view jpeg = spec.get_string_attribute("jpeg:ColorSpace");
  const bool cmyk = jpeg == "CMYK" || jpeg == "YCbCrK" ||
                    spec.get_string_attribute("tiff:ColorSpace") == "CMYK" ||
                    (picture.format->plugin == "psd" && IsCmykPsd(picture.file));
  if (!cmyk) return;
  picture.spec.erase_attribute("ICCProfile");
  picture.spec.erase_attribute("jpeg:ColorSpace");
  picture.notices.push_back(picture.file.string() +
                            ": is in CMYK; it is converted to RGB without its profile, so that "
                            "colours change. Convert it beforehand to choose how.");
}

bool IsStraight(const Picture& picture, AlphaMeaning meaning) {
  if (!picture.layout.HasAlpha()) return true;
  if (meaning != AlphaMeaning::kAsInFile) return meaning == AlphaMeaning::kStraight;
  const bool silently = std::find(kSilentlyStraight.begin(), kSilentlyStraight.end(),
                                  picture.format->plugin) != kSilentlyStraight.end();
  return silently || picture.spec.get_int_attribute("oiio:UnassociatedAlpha", 0) != 0;
}

}  // namespace

Window Picture::Data() const {
  if (!HasFrame()) return {0, 0, spec.width, spec.height};
  return {spec.x - spec.full_x, spec.y - spec.full_y, spec.width, spec.height};
}

Window Picture::Seen() const {
  const Window data = Data();
  Window seen{std::max(data.x, 0), std::max(data.y, 0), 0, 0};
  seen.width = std::max(std::min(data.Right(), Width()) - seen.x, 0);
  seen.height = std::max(std::min(data.Bottom(), Height()) - seen.y, 0);
  return seen;
}

void MakeBlack(Picture& picture) {
  const auto channels = static_cast<std::size_t>(picture.spec.nchannels);
  const auto alpha = static_cast<std::size_t>(picture.layout.alpha);
  std::visit(
      [&](auto& samples) {
        using Sample = typename std::decay_t<decltype(samples)>::value_type;
        const Sample white = std::is_integral_v<Sample> ? std::numeric_limits<Sample>::max()
                                                        : static_cast<Sample>(1);
        std::fill(samples.begin(), samples.end(), static_cast<Sample>(0));
        if (!picture.layout.HasAlpha()) return;
        for (std::size_t i = alpha; i < samples.size(); i += channels) samples[i] = white;
      },
      picture.samples);
}

OIIO::ImageSpec ReaderWishes() {
  OIIO::ImageSpec wishes;
  wishes.attribute("oiio:UnassociatedAlpha", 1);
  return wishes;
}

std::unique_ptr<OIIO::ImageInput> MakeReader(const Format& format) {
  if (format.plugin == "webp") return std::make_unique<WebpInput>();
  return OIIO::ImageInput::create(std::string(format.plugin));
}

bool CallFileProgress(void* progress, float done) {
  return static_cast<StoppableProgress*>(progress)->Tell(done);
}

std::string OneLine(std::string message) {
  std::replace(message.begin(), message.end(), '\n', ' ');
  while (!message.empty() && (message.back() == ' ' || message.back() == '.')) message.pop_back();
  return message;
}

ChannelLayout FindChannels(const OIIO::ImageSpec& spec) {
  const auto named = [&](const char* name) { return spec.channelindex(name); };
  ChannelLayout layout;
  if (named("R") >= 0 && named("G") >= 0 && named("B") >= 0) {
    layout = {named("R"), named("G"), named("B"), -1};
  } else if (spec.nchannels >= 3) {
    layout = {0, 1, 2, -1};
  }
  const auto isColour = [&](int channel) {
    return channel == layout.red || channel == layout.green || channel == layout.blue;
  };
  layout.alpha = spec.alpha_channel;
  if (layout.alpha < 0 || layout.alpha >= spec.nchannels || isColour(layout.alpha)) {
    layout.alpha = named("A");
  }
  if (layout.alpha >= 0 && isColour(layout.alpha)) layout.alpha = -1;
  return layout;
}

Picture PictureReader::ReadAsItIs(const FileProgress& progress, const ReadChoice& choice) {
  Picture picture;
  picture.file = file_;
  picture.format = &TellFormat(file_);
  if (input_ == nullptr) {
    CheckPeekedSize(file_, *picture.format, limits_);
    input_ = OpenPicture(file_, *picture.format);
  }
  OIIO::ImageInput& input = *input_;
  picture.part =
      choice.page >= 0 ? choice.page : FindPart(input, *picture.format, choice.part, file_);
  if (!input.seek_subimage(picture.part, 0)) FailAsDamaged(file_, OneLine(input.geterror()));
  picture.spec = input.spec();
  CheckSpec(picture, limits_);
  FindOrientation(file_, *picture.format, picture.spec);
  picture.metadata =
      ReadMetadata(file_, picture.part, *picture.format, picture.spec, picture.notices);
  TellCmyk(picture);
  picture.layout = ChooseChannels(picture.spec, choice.channels, file_);
  if (choice.alpha == AlphaMeaning::kIgnored) picture.layout.alpha = -1;
  picture.straight = IsStraight(picture, choice.alpha);
  picture.samples = ReadAllSamples(input, picture, progress);
  if (choice.autoOrient) MakeUpright(picture);
  picture.hasLevels = picture.format->windows && input.seek_subimage(picture.part, 1);
  if (choice.page < 0) TellOtherParts(input, picture);
  static_cast<void>(OIIO::geterror());
  return picture;
}

Picture PictureReader::Read(const FileProgress& progress, const ReadChoice& choice) {
  CheckReadable(file_);
  const QuietLibraries quiet;
  const Format& format = TellFormat(file_);
  const auto tryToRead = [&] { PictureReader(file_, limits_).ReadAsItIs({}, choice); };
  if (format.fragile && !SurvivesReading(tryToRead)) {
    FailAsDamaged(file_, "the reader of " + std::string(format.name) + " broke down over it");
  }
  try {
    return ReadAsItIs(progress, choice);
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw Failure(kTryLater, file_.string() +
                                 ": there is not enough memory to read it. Use a smaller picture.");
  } catch (const std::exception& error) {
    // What readers throw over contents that they did not expect.
    FailAsDamaged(file_, OneLine(error.what()));
  }
}

Picture ReadPicture(const fs::path& file, const FileProgress& progress, const PictureLimits& limits,
                    const ReadChoice& choice) {
  return PictureReader(file, limits).Read(progress, choice);
}

}  // namespace vitrell::media
