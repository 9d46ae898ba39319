// Writing through the sink.
#include "media/safe_writer.h"

#include <algorithm>

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

// Whole blocks of rows of every format.
int RowsAtOnce(const OIIO::ImageSpec& spec) {
  constexpr int kTallestBlock = 256;
  const int strip = std::clamp(spec.get_int_attribute("tiff:RowsPerStrip", 1), 1, spec.height);
  return (kTallestBlock + strip - 1) / strip * strip;
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

bool SafeWriter::WriteRows(ResultRows& rows, StoppableProgress& progress) {
  const OIIO::ImageSpec& spec = writer_->spec();
  const int step = RowsAtOnce(spec);
  for (int begin = 0; begin < rows.Height(); begin += step) {
    const int end = std::min(begin + step, rows.Height());
    if (!writer_->write_scanlines(spec.y + begin, spec.y + end, spec.z, rows.Type(),
                                  rows.Take(begin, end))) {
      return false;
    }
    if (progress.Tell(static_cast<float>(end) / static_cast<float>(rows.Height()))) return false;
  }
  return true;
}

void SafeWriter::WritePixels(ResultRows& rows, StoppableProgress& progress) {
  const bool written = WriteRows(rows, progress);
  const bool closed = writer_->close();
  const std::string message = OneLine(writer_->geterror());
  // Some writers flush only when they are destroyed.
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
  throw Failure(kTryLater, ShownTarget(target_) + ": cannot be written (" + cause +
                               "). Free some space and try again.");
}

void SafeWriter::FailIfSinkFailed() const {
  if (!sink_.FirstError().empty()) FailToWrite(sink_.FirstError());
}

}  // namespace vitrell::media
