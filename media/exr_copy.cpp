// EXR through its own library, which copies what it need not understand.
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
#include <half.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

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

Imf::PixelType TypeOf(const OIIO::ImageSpec& spec, std::size_t channel) {
  const OIIO::TypeDesc type =
      spec.channelformats.empty() ? spec.format : spec.channelformats.at(channel);
  if (type == OIIO::TypeDesc::UINT32) return Imf::UINT;
  return type.is_floating_point() && type.size() > sizeof(half) ? Imf::FLOAT : Imf::HALF;
}

std::size_t BytesOf(Imf::PixelType type) { return type == Imf::HALF ? sizeof(half) : 4; }

void SetCompression(const Picture& input, const OIIO::ImageSpec& spec, Imf::Header& header) {
  constexpr std::array<std::pair<std::string_view, Imf::Compression>, 10> kNames = {
      {{"none", Imf::NO_COMPRESSION},
       {"rle", Imf::RLE_COMPRESSION},
       {"zip", Imf::ZIP_COMPRESSION},
       {"zips", Imf::ZIPS_COMPRESSION},
       {"piz", Imf::PIZ_COMPRESSION},
       {"pxr24", Imf::PXR24_COMPRESSION},
       {"b44", Imf::B44_COMPRESSION},
       {"b44a", Imf::B44A_COMPRESSION},
       {"dwaa", Imf::DWAA_COMPRESSION},
       {"dwab", Imf::DWAB_COMPRESSION}}};
  const std::string wanted(spec.get_string_attribute("compression", "zip"));
  if (wanted == input.spec.get_string_attribute("compression")) return;
  const std::size_t colon = std::min(wanted.find(':'), wanted.size());
  for (const auto& [name, compression] : kNames) {
    if (name == wanted.substr(0, colon)) header.compression() = compression;
  }
  if (colon < wanted.size()) {
    header.dwaCompressionLevel() = std::strtof(wanted.c_str() + colon + 1, nullptr);
  }
}

Imf::Header RenderedHeader(const Picture& input, const OIIO::ImageSpec& spec,
                           const OutputForm& form, Imf::Header header) {
  Imf::ChannelList channels;
  for (std::size_t i = 0; i < form.channels.size(); ++i) {
    const OutputChannel& channel = form.channels[i];
    const Imf::Channel* old =
        channel.source < 0 ? nullptr
                           : header.channels().findChannel(input.spec.channel_name(channel.source));
    Imf::Channel made = old == nullptr ? Imf::Channel() : *old;
    if (channel.role != Role::kExtra) made.type = TypeOf(spec, i);
    channels.insert(spec.channelnames.at(i), made);
  }
  header.channels() = channels;
  header.setType(Imf::SCANLINEIMAGE);
  header.lineOrder() = Imf::INCREASING_Y;
  for (const char* name : {"tiles", "chunkCount"}) header.erase(name);
  SetCompression(input, spec, header);
  return header;
}

// A block of rows of the rendered part.
class Block {
 public:
  Block(const Imf::Header& header, const OIIO::ImageSpec& spec, const OutputForm& form,
        const std::vector<float>& samples)
      : window_(header.dataWindow()),
        width_(static_cast<std::size_t>(window_.max.x - window_.min.x) + 1),
        form_(form),
        samples_(samples) {
    for (std::size_t i = 0; i < form.channels.size(); ++i) {
      const std::string& name = spec.channelnames.at(i);
      columns_.push_back({name, header.channels()[name.c_str()].type, {}});
    }
  }

  void Write(Imf::InputPart& source, Imf::OutputPart& target, int top, int rows) {
    Imf::FrameBuffer read;
    Imf::FrameBuffer written;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      Column& column = columns_[i];
      const Imf::Slice slice = SliceOf(i, top, rows);
      written.insert(column.name, slice);
      if (form_.channels[i].role == Role::kExtra) read.insert(column.name, slice);
    }
    if (read.begin() != read.end()) {
      source.setFrameBuffer(read);
      source.readPixels(top, top + rows - 1);
    }
    target.setFrameBuffer(written);
    target.writePixels(rows);
  }

 private:
  struct Column {
    std::string name;
    Imf::PixelType type;
    std::vector<char> bytes;
  };

  // Floats are taken where they are, others from a buffer.
  Imf::Slice SliceOf(std::size_t i, int top, int rows) {
    Column& column = columns_[i];
    const Imath::V2i origin(window_.min.x, top);
    const bool extra = form_.channels[i].role == Role::kExtra;
    const std::size_t channels = form_.channels.size();
    const std::size_t pixels = width_ * static_cast<std::size_t>(rows);
    const float* const from =
        samples_.data() + static_cast<std::size_t>(top - window_.min.y) * width_ * channels + i;
    if (!extra && column.type == Imf::FLOAT) {
      return Imf::Slice::Make(Imf::FLOAT, from, origin, static_cast<int64_t>(width_), rows,
                              channels * sizeof(float), width_ * channels * sizeof(float));
    }
    column.bytes.resize(pixels * BytesOf(column.type));
    if (!extra) Fill(column, from, pixels);
    return Imf::Slice::Make(column.type, column.bytes.data(), origin, static_cast<int64_t>(width_),
                            rows);
  }

  void Fill(Column& column, const float* from, std::size_t pixels) const {
    const std::size_t step = form_.channels.size();
    for (std::size_t pixel = 0; pixel < pixels; ++pixel, from += step) {
      if (column.type == Imf::HALF) {
        reinterpret_cast<half*>(column.bytes.data())[pixel] = half(*from);
      } else {
        constexpr double kWhite = 4294967295.0;
        const double value = std::clamp(static_cast<double>(*from), 0.0, 1.0) * kWhite + 0.5;
        reinterpret_cast<uint32_t*>(column.bytes.data())[pixel] = static_cast<uint32_t>(value);
      }
    }
  }

  const Imath::Box2i window_;
  const std::size_t width_;
  const OutputForm& form_;
  const std::vector<float>& samples_;
  std::vector<Column> columns_;
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

void WriteRendered(Imf::MultiPartInputFile& in, Imf::MultiPartOutputFile& out, int part,
                   Block& block, StoppableProgress& progress) {
  // Whole blocks of every compression.
  constexpr int kRows = 256;
  Imf::InputPart source(in, part);
  Imf::OutputPart target(out, part);
  const Imath::Box2i window = out.header(part).dataWindow();
  for (int top = window.min.y; top <= window.max.y; top += kRows) {
    const int rows = std::min(kRows, window.max.y - top + 1);
    block.Write(source, target, top, rows);
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
             const std::vector<float>& samples, FileSink& sink, StoppableProgress& progress) {
  Imf::MultiPartInputFile in(input.file.c_str());
  std::vector<Imf::Header> headers;
  headers.reserve(static_cast<std::size_t>(in.parts()));
  for (int part = 0; part < in.parts(); ++part) headers.push_back(in.header(part));
  Imf::Header& rendered = headers.at(static_cast<std::size_t>(input.part));
  rendered = RenderedHeader(input, spec, form, rendered);
  SinkStream stream(sink);
  Imf::MultiPartOutputFile out(stream, headers.data(), in.parts());
  Block block(rendered, spec, form, samples);
  for (int part = 0; part < in.parts(); ++part) {
    if (part == input.part) {
      WriteRendered(in, out, part, block, progress);
    } else {
      CopyPart(in, out, part);
    }
  }
}

}  // namespace vitrell::media
