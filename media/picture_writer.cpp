// Writing pictures beside their target.
#include "media/picture_writer.h"

#include <memory>
#include <string_view>
#include <variant>

#include "media/failure.h"
#include "media/file_sink.h"
#include "media/output_file.h"
#include "media/output_spec.h"
#include "media/quiet_libraries.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const fs::path& file, const std::string& cause) {
  throw Failure(kFailed, file.string() + ": " + cause);
}

std::unique_ptr<OIIO::ImageOutput> MakeWriter(const fs::path& target) {
  std::unique_ptr<OIIO::ImageOutput> writer;
  if (target.has_extension()) writer = OIIO::ImageOutput::create(target.string());
  static_cast<void>(OIIO::geterror());
  if (writer == nullptr) {
    Fail(target, "no picture format has this extension. Use .png, .tif, .jpg, .exr or .dpx.");
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
// cannot do through a sink; the file would be damaged.
bool TakesSink(const OIIO::ImageOutput& writer) {
  return writer.supports("ioproxy") != 0 && std::string_view(writer.format_name()) != "tiff";
}

// Opens the file for the picture. An ICC profile that the format's library finds fault with is
// left out, which shows when the header is read back.
std::unique_ptr<OIIO::ImageOutput> OpenWriter(FileSink& sink, const OutputFile& file,
                                              OIIO::ImageSpec spec, const fs::path& target) {
  for (;;) {
    std::unique_ptr<OIIO::ImageOutput> writer = MakeWriter(target);
    if (TakesSink(*writer)) writer->set_ioproxy(&sink);
    if (writer->open(file.TemporaryPath().string(), spec)) return writer;
    const std::string cause = OneLine(writer->geterror());
    if (!sink.FirstError().empty()) {
      Fail(target, "cannot be written (" + sink.FirstError() + "). Free some space and try again.");
    }
    if (spec.find_attribute("ICCProfile") == nullptr) {
      Fail(target, "the format refuses this picture (" + cause + "). Choose another format.");
    }
    spec.erase_attribute("ICCProfile");
    sink.Restart();
  }
}

// Returns whether the writer is sure of its success.
bool WriteSamples(OIIO::ImageOutput& writer, FileSink& sink, const Samples& samples,
                  const fs::path& target, StoppableProgress& progress) {
  const bool written = std::visit(
      [&](const auto& values) {
        using Sample = typename std::decay_t<decltype(values)>::value_type;
        return writer.write_image(OIIO::BaseTypeFromC<Sample>::value, values.data(),
                                  OIIO::AutoStride, OIIO::AutoStride, OIIO::AutoStride,
                                  &CallFileProgress, &progress);
      },
      samples);
  const bool closed = writer.close();
  sink.close();
  progress.ThrowIfStopped();
  if (!sink.FirstError().empty()) {
    Fail(target, "cannot be written (" + sink.FirstError() + "). Free some space and try again.");
  }
  const std::string message = OneLine(writer.geterror());
  if (!written || !closed) {
    Fail(target, "cannot be written (" + (message.empty() ? "the writer failed" : message) +
                     "). Check the space on the disk, or choose another format.");
  }
  // A message alone proves nothing: the TIFF writer complains about an empty EXIF list.
  return message.empty() && TakesSink(writer);
}

// Not every writer tells a failure, so the header is read back in any case and the pixels where
// the writer is not sure.
OIIO::ImageSpec ReadBack(const OutputFile& file, bool pixelsToo, const fs::path& target) {
  OIIO::ImageSpec wishes;
  wishes.attribute("oiio:UnassociatedAlpha", 1);
  const auto input = OIIO::ImageInput::open(file.TemporaryPath().string(), &wishes);
  bool good = input != nullptr;
  if (good && pixelsToo) {
    const OIIO::ImageSpec& spec = input->spec();
    std::vector<uint8_t> pixels(spec.image_pixels() * static_cast<std::size_t>(spec.nchannels));
    good = input->read_image(0, 0, 0, spec.nchannels, OIIO::TypeDesc::UINT8, pixels.data());
  }
  if (!good) {
    Fail(target, "was not written completely (" +
                     OneLine(input == nullptr ? OIIO::geterror() : input->geterror()) +
                     "). Check the space on the disk, or choose another format.");
  }
  return input->spec();
}

void TellLosses(const Picture& input, const OIIO::ImageSpec& wished, const OIIO::TypeDesc& actual,
                const OIIO::ImageSpec& written, std::vector<std::string>& notices) {
  if (actual.size() < wished.format.size()) {
    notices.push_back("the format stores " + NameOf(actual) + ", the picture has " +
                      NameOf(wished.format) + ".");
  }
  if (input.spec.format.is_floating_point() && !actual.is_floating_point()) {
    notices.emplace_back(
        "the float values are written as they are, without colour conversion; linear light looks "
        "dark in this format.");
  }
  for (const std::string& lost : LostMetadata(wished, written)) {
    notices.push_back("the format does not keep the " + lost + ".");
  }
}

}  // namespace

void CheckWritable(const fs::path& target) { MakeWriter(target); }

std::vector<std::string> WritePicture(const Picture& input, const headless::WorldBuffer& given,
                                      const headless::WorldBuffer& result, const WriteOrder& order,
                                      const FileProgress& progress) {
  std::vector<std::string> notices;
  const FormatTraits format = TraitsOf(*MakeWriter(order.target));
  OutputForm form = ChooseForm(input, Inspect(result), format, notices);
  const OIIO::ImageSpec spec = MakeOutputSpec(input, form, format, order.depth, notices);
  OutputFile file(order.target);
  FileSink sink(file.TemporaryPath());
  const QuietLibraries quiet;
  const std::unique_ptr<OIIO::ImageOutput> writer = OpenWriter(sink, file, spec, order.target);
  const OIIO::TypeDesc actual = writer->spec().format;
  form.type = SampleTypeOf(actual);
  StoppableProgress stoppable(progress);
  const bool sure = WriteSamples(*writer, sink, TakeFromEffect(input, given, result, form),
                                 order.target, stoppable);
  if (!sure) file.CheckRoom();
  const OIIO::ImageSpec written = ReadBack(file, !sure, order.target);
  TellLosses(input, spec, actual, written, notices);
  stoppable.Tell(1.0F);
  stoppable.ThrowIfStopped();
  file.Commit(order.force);
  const std::string prefix = order.target.string() + ": ";
  for (std::string& notice : notices) notice.insert(0, prefix);
  return notices;
}

}  // namespace vitrell::media
