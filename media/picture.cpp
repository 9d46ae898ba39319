// Reading pictures.
#include "media/picture.h"

#include <algorithm>
#include <array>
#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <string_view>
#include <type_traits>

#include "media/cmyk.h"
#include "media/failure.h"
#include "media/metadata.h"
#include "media/orientation.h"
#include "media/picture_checks.h"
#include "media/quiet_libraries.h"
#include "media/sample_reading.h"
#include "media/selection.h"
#include "media/trial_reading.h"
#include "media/webp_input.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

// Formats with straight alpha that the library does not mark as such.
constexpr std::array<std::string_view, 4> kSilentlyStraight = {"bmp", "gif", "heif", "jpeg2000"};

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
    CheckUnopened(file_, *picture.format, limits_);
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
    // Readers throw on contents that they did not expect.
    FailAsDamaged(file_, OneLine(error.what()));
  }
}

Picture ReadPicture(const fs::path& file, const FileProgress& progress, const PictureLimits& limits,
                    const ReadChoice& choice) {
  return PictureReader(file, limits).Read(progress, choice);
}

}  // namespace vitrell::media
