// Uses the EXR library itself, which can copy parts without decoding them.
#include "media/exr_copy.h"

#include <Iex.h>
#include <ImfChannelList.h>
#include <ImfDeepScanLineInputPart.h>
#include <ImfDeepScanLineOutputPart.h>
#include <ImfDeepTiledInputPart.h>
#include <ImfDeepTiledOutputPart.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfIO.h>
#include <ImfInputPart.h>
#include <ImfMultiPartInputFile.h>
#include <ImfMultiPartOutputFile.h>
#include <ImfOutputPart.h>
#include <ImfPartType.h>
#include <ImfTiledInputPart.h>
#include <ImfTiledOutputPart.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "media/exr_block.h"
#include "media/exr_header.h"

namespace vitrell::media {
namespace {

class SinkStream : public Imf::OStream {
 public:
  explicit SinkStream(FileSink& sink) : OStream(sink.filename().c_str()), sink_(sink) {}

  void write(const char* bytes, int size) override {
    const auto length = static_cast<std::size_t>(size);
    if (sink_.write(bytes, length) != length) throw Iex::IoExc(sink_.FirstError());
  }
  uint64_t tellp() override { return static_cast<uint64_t>(sink_.tell()); }
  void seekp(uint64_t position) override { sink_.seek(static_cast<int64_t>(position)); }

 private:
  FileSink& sink_;
};

// Compressed blocks are copied as they are.
void CopyPart(Imf::MultiPartInputFile& in, Imf::MultiPartOutputFile& out, int part) {
  const auto copy = [&]<typename Input, typename Output>() {
    Input source(in, part);
    Output target(out, part);
    target.copyPixels(source);
  };
  const std::string& type = in.header(part).type();
  if (type == Imf::DEEPSCANLINE) {
    copy.operator()<Imf::DeepScanLineInputPart, Imf::DeepScanLineOutputPart>();
  } else if (type == Imf::DEEPTILE) {
    copy.operator()<Imf::DeepTiledInputPart, Imf::DeepTiledOutputPart>();
  } else if (type == Imf::TILEDIMAGE) {
    copy.operator()<Imf::TiledInputPart, Imf::TiledOutputPart>();
  } else {
    copy.operator()<Imf::InputPart, Imf::OutputPart>();
  }
}

// Takes blocks of whole rows from a buffer of the data window's coordinates.
class RenderedPart {
 public:
  RenderedPart(Imf::MultiPartOutputFile& out, int part) : window_(out.header(part).dataWindow()) {
    if (IsTiled(out.header(part))) {
      tiles_.emplace(out, part);
    } else {
      rows_.emplace(out, part);
    }
  }

  // A block's rows: whole blocks of every compression, or whole tiles.
  int Step() const {
    constexpr int kRows = 256;
    if (!tiles_) return kRows;
    const int tile = static_cast<int>(tiles_->tileYSize());
    return (kRows + tile - 1) / tile * tile;
  }

  void Write(const Imf::FrameBuffer& buffer, int top, int rows) {
    if (!tiles_) {
      rows_->setFrameBuffer(buffer);
      rows_->writePixels(rows);
      return;
    }
    const int tile = static_cast<int>(tiles_->tileYSize());
    const int first = (top - window_.min.y) / tile;
    tiles_->setFrameBuffer(buffer);
    tiles_->writeTiles(0, tiles_->numXTiles() - 1, first, first + (rows - 1) / tile);
  }

 private:
  const Imath::Box2i window_;
  std::optional<Imf::OutputPart> rows_;
  std::optional<Imf::TiledOutputPart> tiles_;
};

void WriteRendered(Imf::MultiPartInputFile& in, Imf::MultiPartOutputFile& out, int part,
                   ExrBlock& block, StoppableProgress& progress) {
  Imf::InputPart source(in, part);
  RenderedPart target(out, part);
  const Imath::Box2i window = out.header(part).dataWindow();
  for (int top = window.min.y; top <= window.max.y; top += target.Step()) {
    const int rows = std::min(target.Step(), window.max.y - top + 1);
    target.Write(block.Fill(source, top, rows), top, rows);
    const auto done = static_cast<float>(top + rows - window.min.y);
    progress.Tell(done / static_cast<float>(window.max.y - window.min.y + 1));
    progress.ThrowIfStopped();
  }
}

}  // namespace

bool CanCopyExr(const Picture& input, const Format& format) {
  if (format.plugin != "openexr" || input.format->plugin != "openexr") return false;
  const Imf::MultiPartInputFile in(input.file.c_str());
  const Imf::ChannelList& channels = in.header(input.part).channels();
  return std::all_of(
      input.spec.channelnames.begin(), input.spec.channelnames.end(),
      [&](const std::string& name) { return channels.findChannel(name) != nullptr; });
}

void CopyExr(const Picture& input, const OIIO::ImageSpec& spec, const OutputForm& form,
             ResultRows& rows, FileSink& sink, StoppableProgress& progress) {
  Imf::MultiPartInputFile in(input.file.c_str());
  std::vector<Imf::Header> headers;
  headers.reserve(static_cast<std::size_t>(in.parts()));
  for (int part = 0; part < in.parts(); ++part) headers.push_back(in.header(part));
  Imf::Header& rendered = headers.at(static_cast<std::size_t>(input.part));
  rendered = RenderedHeader(input, spec, form, rendered);
  SinkStream stream(sink);
  Imf::MultiPartOutputFile out(stream, headers.data(), in.parts());
  ExrBlock block(rendered, spec, form, rows);
  for (int part = 0; part < in.parts(); ++part) {
    if (part == input.part) {
      WriteRendered(in, out, part, block, progress);
    } else {
      CopyPart(in, out, part);
    }
  }
}

}  // namespace vitrell::media
