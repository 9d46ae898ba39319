// Filling the buffers of EXR channels.
#include "media/exr_block.h"

#include <ImfChannelList.h>
#include <OpenImageIO/half.h>

#include <algorithm>
#include <cstdint>

namespace vitrell::media {

std::size_t BytesOf(Imf::PixelType type) { return type == Imf::HALF ? sizeof(half) : 4; }

ExrBlock::ExrBlock(const Imf::Header& header, const OIIO::ImageSpec& spec, const OutputForm& form,
                   ResultRows& rows)
    : window_(header.dataWindow()),
      width_(static_cast<std::size_t>(window_.max.x - window_.min.x) + 1),
      form_(form),
      rows_(rows) {
  for (std::size_t i = 0; i < form.channels.size(); ++i) {
    const std::string& name = spec.channelnames.at(i);
    columns_.push_back({name, header.channels()[name.c_str()].type, {}});
  }
}

const Imf::FrameBuffer& ExrBlock::Fill(Imf::InputPart& source, int top, int rows) {
  const int first = top - window_.min.y;
  const auto* const taken = static_cast<const char*>(rows_.Take(first, first + rows));
  Imf::FrameBuffer read;
  buffer_ = Imf::FrameBuffer();
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const Imf::Slice slice = SliceOf(i, top, rows, taken);
    buffer_.insert(columns_[i].name, slice);
    if (form_.channels[i].role == Role::kExtra) read.insert(columns_[i].name, slice);
  }
  if (read.begin() != read.end()) {
    source.setFrameBuffer(read);
    source.readPixels(top, top + rows - 1);
  }
  return buffer_;
}

// Channels that already have the right type are used in place, the others are copied to a buffer.
Imf::Slice ExrBlock::SliceOf(std::size_t i, int top, int rows, const char* taken) {
  Column& column = columns_[i];
  const Imath::V2i origin(window_.min.x, top);
  const bool extra = form_.channels[i].role == Role::kExtra;
  const Imf::PixelType takenType = form_.type == SampleType::kHalf ? Imf::HALF : Imf::FLOAT;
  const std::size_t step = form_.channels.size() * BytesOf(takenType);
  const std::size_t pixels = width_ * static_cast<std::size_t>(rows);
  const char* const from = taken + i * BytesOf(takenType);
  if (!extra && column.type == takenType) {
    return Imf::Slice::Make(takenType, from, origin, static_cast<int64_t>(width_), rows, step,
                            width_ * step);
  }
  column.bytes.resize(pixels * BytesOf(column.type));
  if (!extra) Convert(column, reinterpret_cast<const float*>(from), pixels);
  return Imf::Slice::Make(column.type, column.bytes.data(), origin, static_cast<int64_t>(width_),
                          rows);
}

// From floats: half floats are taken only where every rendered channel is of that type.
void ExrBlock::Convert(Column& column, const float* from, std::size_t pixels) const {
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

}  // namespace vitrell::media
