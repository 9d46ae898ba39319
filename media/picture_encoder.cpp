// Contents of picture files.
#include "media/picture_encoder.h"

#include <exception>
#include <new>

#include "media/exr_copy.h"
#include "media/failure.h"
#include "media/file_sink.h"
#include "media/heif_output.h"
#include "media/loss_notes.h"
#include "media/metadata.h"
#include "media/metadata_fitting.h"
#include "media/orientation.h"
#include "media/output_form.h"
#include "media/output_spec.h"
#include "media/quiet_libraries.h"
#include "media/result_rows.h"
#include "media/safe_writer.h"
#include "media/standard_streams.h"
#include "media/thumbnail.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void FailTarget(const fs::path& file, const std::string& cause) {
  throw Failure(kFailed, ShownTarget(file) + ": " + cause);
}

SampleType SampleTypeOf(const OIIO::TypeDesc& type) {
  if (type == OIIO::TypeDesc::UINT8) return SampleType::kByte;
  return type == OIIO::TypeDesc::UINT16 ? SampleType::kWord : SampleType::kFloat;
}

// Whether half floats hold these channels; those beyond colour and alpha are not asked for where
// they are copied as they are stored.
bool AllHalf(const OIIO::ImageSpec& spec, const OutputForm& form, bool copies) {
  for (std::size_t i = 0; i < form.channels.size(); ++i) {
    if (copies && form.channels[i].role == Role::kExtra) continue;
    if (spec.channelformat(static_cast<int>(i)) != OIIO::TypeDesc::HALF) return false;
  }
  return true;
}

[[noreturn]] void FailOverExr(const fs::path& file, const std::exception& error) {
  FailTarget(file, "cannot be copied (" + OneLine(error.what()) +
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
               ResultRows& rows, const fs::path& temporary, const fs::path& target,
               StoppableProgress& progress) {
  FileSink sink(temporary);
  const auto failIfSinkFailed = [&] {
    if (sink.FirstError().empty()) return;
    throw Failure(kTryLater, ShownTarget(target) + ": cannot be written (" + sink.FirstError() +
                                 "). Free some space and try again.");
  };
  try {
    CopyExr(input, spec, form, rows, sink, progress);
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
OIIO::ImageSpec ReadBack(const Format& format, const fs::path& file, const OIIO::ImageSpec& spec,
                         int part, const fs::path& target) {
  const auto input = MakeReader(format);
  OIIO::ImageSpec written;
  const bool opened = input != nullptr && input->open(file.string(), written, ReaderWishes()) &&
                      input->seek_subimage(part, 0);
  if (opened) written = input->spec();
  if (!opened || written.width != spec.width || written.height != spec.height) {
    FailTarget(target, "was not written as it should be (" +
                           OneLine(input == nullptr ? OIIO::geterror() : input->geterror()) +
                           "). Choose another format.");
  }
  AddOverlookedProfile(file, format, written);
  FindOrientation(file, format, written);
  return written;
}

// The JPEG 2000 writer makes five resolution levels, each of half the size.
constexpr int kSmallestJpeg2000 = 32;

void CheckFits(const Picture& input, const Format& format, const fs::path& target) {
  if (format.plugin == "jpeg2000" &&
      (input.Width() < kSmallestJpeg2000 || input.Height() < kSmallestJpeg2000)) {
    FailTarget(target, "JPEG 2000 is written from 32 x 32 pixels on. Choose another format.");
  }
}

void SetBlock(const char* name, const std::string& block, OIIO::ImageSpec& spec) {
  if (block.empty()) return;
  const OIIO::TypeDesc bytes(OIIO::TypeDesc::UINT8, static_cast<int>(block.size()));
  spec.attribute(name, bytes, block.data());
}

// Transfers the metadata to one output. AVIF and HEIC get it together with the pixels, other
// formats after them.
class MetadataTransfer {
 public:
  MetadataTransfer(const Picture& input, const headless::WorldBuffer& result, const Format& format,
                   OIIO::ImageSpec& spec)
      : format_(format) {
    const OIIO::ParamValue* profile = spec.find_attribute("ICCProfile");
    if (input.metadata != nullptr) {
      metadata_ = FitMetadata(*input.metadata, format, spec);
      const bool takesThumbnail = format.exif && format.plugin != "tiff";
      if (takesThumbnail && HasThumbnail(input.metadata->exif, *input.format)) {
        AddThumbnail(result, metadata_.exif);
      }
    }
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

EncodedPicture EncodePicture(const Picture& input, const headless::WorldBuffer& given,
                             const headless::WorldBuffer& result, const WriteOrder& order,
                             const Format& format, const fs::path& file,
                             const FileProgress& progress) {
  EncodedPicture encoded;
  std::vector<std::string>& notices = encoded.notices;
  CheckFits(input, format, order.target);
  const Window kept =
      NeedsWholeFrame(input, format) ? Window{0, 0, input.Width(), input.Height()} : input.Seen();
  OutputForm form = ChooseForm(input, Inspect(result, kept), format, notices);
  OIIO::ImageSpec spec = MakeOutputSpec(input, form, format, order, notices);
  MetadataTransfer metadata(input, result, format, spec);
  const QuietLibraries quiet;
  StoppableProgress stoppable(progress);
  OIIO::TypeDesc actual = OIIO::TypeDesc::FLOAT;
  const bool copies = CopiesExr(input, format);
  if (copies) {
    form.type = AllHalf(spec, form, true) ? SampleType::kHalf : SampleType::kFloat;
    ResultRows rows(input, given, result, form);
    WriteCopy(input, spec, form, rows, file, order.target, stoppable);
    if (input.hasLevels) {
      notices.emplace_back("the smaller copies of the picture (mip levels) are left out.");
    }
  } else {
    SafeWriter writer(format, file, order.target);
    writer.Open(spec);
    actual = writer.Header().format;
    form.type = AllHalf(writer.Header(), form, false) ? SampleType::kHalf : SampleTypeOf(actual);
    ResultRows rows(input, given, result, form);
    writer.WritePixels(rows, stoppable);
    metadata.Run(writer);
    writer.Finish();
    TellShrinking(input, format, file, order.encoding, notices);
  }
  encoded.header = ReadBack(format, file, spec, copies ? input.part : 0, order.target);
  TellLosses(input, order.depth, spec, actual, encoded.header, metadata.Lost(),
             metadata.HasResolution(), notices);
  TellClipping(input, given, result, order.clippedPixels, actual, notices);
  if (!form.wholeFrame) TellCutOff(input, result, notices);
  stoppable.Tell(1.0F);
  stoppable.ThrowIfStopped();
  return encoded;
}

}  // namespace vitrell::media
