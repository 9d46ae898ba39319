// Writing through the sink.
#include "media/safe_writer.h"

#include <type_traits>
#include <variant>

#include "media/failure.h"
#include "media/heif_output.h"
#include "media/metadata_writer.h"
#include "media/output_spec.h"
#include "media/standard_streams.h"
#include "media/webp_output.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const fs::path& file, const std::string& cause) {
  throw Failure(kFailed, ShownTarget(file) + ": " + cause);
}

// The TIFF writer of OpenImageIO 2.4 has to read what it wrote when there are EXIF data, which it
// cannot do through a sink.
bool TakesSink(const OIIO::ImageOutput& writer, const Format& format, const OIIO::ImageSpec& spec) {
  return writer.supports("ioproxy") != 0 && !(format.plugin == "tiff" && HasExif(spec));
}

}  // namespace

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

SafeWriter::SafeWriter(const Format& format, const fs::path& temporary, const fs::path& target)
    : format_(format), temporary_(temporary), target_(target), sink_(temporary) {}

void SafeWriter::Open(OIIO::ImageSpec spec) {
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

void SafeWriter::WritePixels(const Samples& samples, StoppableProgress& progress) {
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

std::vector<std::string> SafeWriter::AddMetadata(const Metadata& metadata) {
  return PutMetadata(metadata, format_, temporary_, sink_);
}

void SafeWriter::Finish() {
  sink_.close();
  FailIfSinkFailed();
}

bool SafeWriter::OpenOnce(const OIIO::ImageSpec& spec) {
  writer_ = MakeWriter(format_, target_);
  if (TakesSink(*writer_, format_, spec)) {
    memory_.reset();
    writer_->set_ioproxy(&sink_);
    return writer_->open(target_.string(), spec);
  }
  memory_ = std::make_unique<MemoryFile>();
  return writer_->open(memory_->Path().string(), spec);
}

void SafeWriter::FailToWrite(const std::string& cause) const {
  Fail(target_, "cannot be written (" + cause + "). Free some space and try again.");
}

void SafeWriter::FailIfSinkFailed() const {
  if (!sink_.FirstError().empty()) FailToWrite(sink_.FirstError());
}

}  // namespace vitrell::media
