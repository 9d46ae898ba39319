// Writing pictures beside their target.
#include "media/picture_writer.h"

#include <cstdint>
#include <exception>
#include <memory>
#include <new>
#include <set>
#include <string_view>
#include <variant>

#include "media/exr_copy.h"
#include "media/failure.h"
#include "media/file_sink.h"
#include "media/formats.h"
#include "media/heif_output.h"
#include "media/memory_file.h"
#include "media/metadata.h"
#include "media/metadata_writer.h"
#include "media/orientation.h"
#include "media/output_file.h"
#include "media/output_spec.h"
#include "media/quiet_libraries.h"
#include "media/standard_streams.h"
#include "media/webp_output.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const fs::path& file, const std::string& cause) {
  throw Failure(kFailed, ShownTarget(file) + ": " + cause);
}

const Format& FormatFor(const fs::path& target) {
  const Format* format = FormatToWrite(IsStandardStream(target) ? "standard-output.png" : target);
  if (format == nullptr) {
    Fail(target,
         "no format that is written has this extension. Use .png, .jpg, .tif, .exr or "
         "another one that `vitrell formats` lists.");
  }
  return *format;
}

std::unique_ptr<OIIO::ImageOutput> MakeWriter(const Format& format, const fs::path& target) {
  if (format.plugin == "webp") return std::make_unique<WebpOutput>();
  if (format.plugin == "heif") return std::make_unique<HeifOutput>();
  std::unique_ptr<OIIO::ImageOutput> writer = OIIO::ImageOutput::create(std::string(format.plugin));
  if (writer == nullptr) {
    const std::string cause = OneLine(OIIO::geterror());
    Fail(target, "the picture library cannot begin to write " + std::string(format.name) + " (" +
                     (cause.empty() ? "it lacks this format, or threads" : cause) +
                     "). Choose another format.");
  }
  return writer;
}

SampleType SampleTypeOf(const OIIO::TypeDesc& type) {
  if (type == OIIO::TypeDesc::UINT8) return SampleType::kByte;
  return type == OIIO::TypeDesc::UINT16 ? SampleType::kWord : SampleType::kFloat;
}

std::string NameOf(const OIIO::TypeDesc& type) {
  const std::string bits = std::to_string(8 * type.size());
  return bits + (type.is_floating_point() ? "-bit float" : "-bit integers");
}

// The TIFF writer of OpenImageIO 2.4 has to read what it wrote when there are EXIF data, which it
// cannot do through a sink.
bool TakesSink(const OIIO::ImageOutput& writer, const Format& format, const OIIO::ImageSpec& spec) {
  return writer.supports("ioproxy") != 0 && !(format.plugin == "tiff" && HasExif(spec));
}

// Everything that is written passes the sink, at once or from a file in memory, because no writer
// sees every failure itself.
class SafeWriter {
 public:
  SafeWriter(const Format& format, const fs::path& temporary, const fs::path& target)
      : format_(format), temporary_(temporary), target_(target), sink_(temporary) {}

  // An ICC profile that the format's library finds fault with is left out, which shows when the
  // header is read back.
  void Open(OIIO::ImageSpec spec) {
    while (!OpenOnce(spec)) {
      const std::string cause = OneLine(writer_->geterror());
      FailIfSinkFailed();
      if (spec.find_attribute("ICCProfile") == nullptr) {
        Fail(target_, "the format refuses this picture (" + cause + "). Choose another format.");
      }
      spec.erase_attribute("ICCProfile");
      sink_.Restart();
    }
  }

  OIIO::TypeDesc StoredType() const { return writer_->spec().format; }

  void WritePixels(const Samples& samples, StoppableProgress& progress) {
    const bool written = std::visit(
        [&](const auto& values) {
          using Sample = typename std::decay_t<decltype(values)>::value_type;
          return writer_->write_image(OIIO::BaseTypeFromC<Sample>::value, values.data(),
                                      OIIO::AutoStride, OIIO::AutoStride, OIIO::AutoStride,
                                      &CallFileProgress, &progress);
        },
        samples);
    const bool closed = writer_->close();
    const std::string message = OneLine(writer_->geterror());
    // Some writers hand over the rest when they end.
    writer_.reset();
    const std::string cut = memory_ ? memory_->CopyTo(sink_) : std::string();
    memory_.reset();
    progress.ThrowIfStopped();
    if (!cut.empty()) FailToWrite(cut);
    FailIfSinkFailed();
    if (!written || !closed) {
      Fail(target_, "cannot be written (" + (message.empty() ? "the writer failed" : message) +
                        "). Choose another format.");
    }
  }

  // Between the pixels and the end. Returns what the file does not take.
  std::vector<std::string> AddMetadata(const Metadata& metadata) {
    return PutMetadata(metadata, format_, temporary_, sink_);
  }

  void Finish() {
    sink_.close();
    FailIfSinkFailed();
  }

 private:
  bool OpenOnce(const OIIO::ImageSpec& spec) {
    writer_ = MakeWriter(format_, target_);
    if (TakesSink(*writer_, format_, spec)) {
      memory_.reset();
      writer_->set_ioproxy(&sink_);
      return writer_->open(target_.string(), spec);
    }
    memory_ = std::make_unique<MemoryFile>();
    return writer_->open(memory_->Path().string(), spec);
  }

  [[noreturn]] void FailToWrite(const std::string& cause) const {
    Fail(target_, "cannot be written (" + cause + "). Free some space and try again.");
  }

  void FailIfSinkFailed() const {
    if (!sink_.FirstError().empty()) FailToWrite(sink_.FirstError());
  }

  const Format& format_;
  const fs::path& temporary_;
  const fs::path& target_;
  FileSink sink_;
  std::unique_ptr<MemoryFile> memory_;
  std::unique_ptr<OIIO::ImageOutput> writer_;
};

[[noreturn]] void FailOverExr(const fs::path& file, const std::exception& error) {
  Fail(file, "cannot be copied (" + OneLine(error.what()) +
                 "). Export it again, or choose another format for the output.");
}

bool CopiesExr(const Picture& input, const Format& format) {
  try {
    return CanCopyExr(input, format);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    FailOverExr(input.file, error);
  }
}

void WriteCopy(const Picture& input, const OIIO::ImageSpec& spec, const OutputForm& form,
               const std::vector<float>& samples, const fs::path& temporary, const fs::path& target,
               StoppableProgress& progress) {
  FileSink sink(temporary);
  const auto failIfSinkFailed = [&] {
    if (sink.FirstError().empty()) return;
    Fail(target, "cannot be written (" + sink.FirstError() + "). Free some space and try again.");
  };
  try {
    CopyExr(input, spec, form, samples, sink, progress);
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    failIfSinkFailed();
    FailOverExr(input.file, error);
  }
  sink.close();
  failIfSinkFailed();
}

// The header of what was written, which must be that of the picture.
OIIO::ImageSpec ReadBack(const Format& format, const OutputFile& file, const OIIO::ImageSpec& spec,
                         int part, const fs::path& target) {
  const auto input = MakeReader(format);
  OIIO::ImageSpec written;
  const bool opened = input != nullptr &&
                      input->open(file.TemporaryPath().string(), written, ReaderWishes()) &&
                      input->seek_subimage(part, 0);
  if (opened) written = input->spec();
  if (!opened || written.width != spec.width || written.height != spec.height) {
    Fail(target, "was not written as it should be (" +
                     OneLine(input == nullptr ? OIIO::geterror() : input->geterror()) +
                     "). Choose another format.");
  }
  AddOverlookedProfile(file.TemporaryPath(), format, written);
  FindOrientation(file.TemporaryPath(), format, written);
  return written;
}

// The writer of JPEG 2000 halves every picture five times.
constexpr int kSmallestJpeg2000 = 32;

void CheckFits(const Picture& input, const Format& format, const fs::path& target) {
  if (format.plugin == "jpeg2000" &&
      (input.Width() < kSmallestJpeg2000 || input.Height() < kSmallestJpeg2000)) {
    Fail(target, "JPEG 2000 is written from 32 x 32 pixels on. Choose another format.");
  }
}

void TellLosses(const Picture& input, Depth depth, const OIIO::ImageSpec& wished,
                const OIIO::TypeDesc& actual, const OIIO::ImageSpec& written,
                const std::vector<std::string>& lostMetadata, bool resolutionKept,
                std::vector<std::string>& notices) {
  const OIIO::TypeDesc& type = input.spec.format;
  const OIIO::TypeDesc& had =
      depth == Depth::kAuto && !type.is_floating_point() ? type : wished.format;
  if (actual.size() < had.size()) {
    notices.push_back("the format stores " + NameOf(actual) + ", the picture has " + NameOf(had) +
                      ".");
  }
  if (input.spec.format.is_floating_point() && !actual.is_floating_point()) {
    notices.emplace_back(
        "the float values are written as they are, without colour conversion; linear light looks "
        "dark in this format.");
  }
  std::set<std::string> all(lostMetadata.begin(), lostMetadata.end());
  all.merge(LostMetadata(wished, written));
  if (resolutionKept) all.erase("resolution");
  for (const std::string& lost : all) {
    notices.push_back("the format does not keep the " + lost + ".");
  }
}

// Floats outside black to white pass the effect where it leaves a pixel alone; elsewhere, and in
// formats of integers, they do not.
void TellClipping(const Picture& input, const headless::WorldBuffer& given,
                  const headless::WorldBuffer& result, const WriteOrder& order,
                  const OIIO::TypeDesc& actual, std::vector<std::string>& notices) {
  if (order.clippedPixels == 0) return;
  if (!actual.is_floating_point()) {
    notices.push_back(std::to_string(order.clippedPixels) +
                      " pixels had values outside black to white, which the format does not "
                      "store, and were clipped.");
    return;
  }
  const std::int64_t changed = CountClippedAndChanged(input, given, result);
  if (changed == 0) return;
  notices.push_back(std::to_string(changed) +
                    " pixels that the effect changed had values outside black to white and were "
                    "clipped.");
}

// Some stages reach beyond the pixels of the file, whose window stays as it is.
void TellCutOff(const Picture& input, const headless::WorldBuffer& result,
                std::vector<std::string>& notices) {
  const std::int64_t painted = CountPaintedBeyondData(input, result);
  if (painted == 0) return;
  notices.push_back(std::to_string(painted) +
                    " pixels that the effect painted outside the data window are left out.");
}

// A file with loss that becomes far smaller has lost more than before.
void TellShrinking(const Picture& input, const Format& format, const fs::path& written,
                   const Encoding& encoding, std::vector<std::string>& notices) {
  constexpr std::uintmax_t kTooSmall = 3;
  if (!format.quality || encoding.quality || encoding.lossless || input.format != &format) return;
  std::error_code error;
  const std::uintmax_t before = fs::file_size(input.file, error);
  const std::uintmax_t after = fs::file_size(written, error);
  if (error || after == 0 || before / after < kTooSmall) return;
  notices.push_back("is " + std::to_string(before / after) +
                    " times smaller than the input; --quality above " +
                    std::to_string(UsualQuality(format)) + " keeps more.");
}

void SetBlock(const char* name, const std::string& block, OIIO::ImageSpec& spec) {
  if (block.empty()) return;
  const OIIO::TypeDesc bytes(OIIO::TypeDesc::UINT8, static_cast<int>(block.size()));
  spec.attribute(name, bytes, block.data());
}

// The metadata on their way into one output. AVIF and HEIC get them with the pixels, the others
// behind these.
class MetadataTransfer {
 public:
  MetadataTransfer(const Picture& input, const Format& format, OIIO::ImageSpec& spec)
      : format_(format) {
    const OIIO::ParamValue* profile = spec.find_attribute("ICCProfile");
    if (input.metadata != nullptr) metadata_ = FitMetadata(*input.metadata, format, spec);
    // The picture library's writer leaves it out.
    if (profile != nullptr && format.plugin == "jpeg2000") {
      metadata_.profile.assign(static_cast<const char*>(profile->data()), profile->type().size());
    }
    lost_ = KindsWithoutPlace(metadata_, format);
    if (format.plugin != "heif") return;
    SetBlock(kHeifExif, ExifBlock(metadata_), spec);
    SetBlock(kHeifXmp, XmpBlock(metadata_), spec);
  }

  void Run(SafeWriter& writer) {
    const bool apart = format_.plugin != "heif" && (format_.exif || format_.iptc || format_.xmp);
    if (apart && !metadata_.IsEmpty()) lost_ = writer.AddMetadata(metadata_);
  }

  const std::vector<std::string>& Lost() const { return lost_; }
  // Among the EXIF data, where the format has no other place for it.
  bool HasResolution() const {
    return format_.exif &&
           metadata_.exif.findKey(Exiv2::ExifKey("Exif.Image.XResolution")) != metadata_.exif.end();
  }

 private:
  const Format& format_;
  Metadata metadata_;
  std::vector<std::string> lost_;
};

}  // namespace

void CheckWritable(const fs::path& target, const Encoding& encoding) {
  const Format& format = FormatFor(target);
  CheckEncoding(encoding, format);
  MakeWriter(format, target);
}

std::vector<std::string> WritePicture(const Picture& input, const headless::WorldBuffer& given,
                                      const headless::WorldBuffer& result, const WriteOrder& order,
                                      const FileProgress& progress) {
  std::vector<std::string> notices;
  const Format& format = FormatFor(order.target);
  CheckFits(input, format, order.target);
  const Window kept =
      NeedsWholeFrame(input, format) ? Window{0, 0, input.Width(), input.Height()} : input.Seen();
  OutputForm form = ChooseForm(input, Inspect(result, kept), format, notices);
  OIIO::ImageSpec spec = MakeOutputSpec(input, form, format, order, notices);
  MetadataTransfer metadata(input, format, spec);
  OutputFile file(order.target,
                  order.onlyTry ? OutputFile::Purpose::kTry : OutputFile::Purpose::kWrite);
  const QuietLibraries quiet;
  StoppableProgress stoppable(progress);
  OIIO::TypeDesc actual = OIIO::TypeDesc::FLOAT;
  const bool copies = CopiesExr(input, format);
  if (copies) {
    form.type = SampleType::kFloat;
    const Samples samples = TakeFromEffect(input, given, result, form);
    WriteCopy(input, spec, form, std::get<std::vector<float>>(samples), file.TemporaryPath(),
              order.target, stoppable);
  } else {
    SafeWriter writer(format, file.TemporaryPath(), order.target);
    writer.Open(spec);
    actual = writer.StoredType();
    form.type = SampleTypeOf(actual);
    writer.WritePixels(TakeFromEffect(input, given, result, form), stoppable);
    metadata.Run(writer);
    writer.Finish();
    TellShrinking(input, format, file.TemporaryPath(), order.encoding, notices);
  }
  const OIIO::ImageSpec written =
      ReadBack(format, file, spec, copies ? input.part : 0, order.target);
  TellLosses(input, order.depth, spec, actual, written, metadata.Lost(), metadata.HasResolution(),
             notices);
  TellClipping(input, given, result, order, actual, notices);
  if (!form.wholeFrame) TellCutOff(input, result, notices);
  stoppable.Tell(1.0F);
  stoppable.ThrowIfStopped();
  notices.insert(notices.end(), file.Notices().begin(), file.Notices().end());
  const std::string prefix = ShownTarget(order.target) + ": ";
  for (std::string& notice : notices) notice.insert(0, prefix);
  if (order.agree) order.agree(written, format, notices);
  if (!order.onlyTry) file.Commit(order.force);
  return notices;
}

}  // namespace vitrell::media
