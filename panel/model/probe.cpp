// Numbers in the type that the file stores.
#include "panel/model/probe.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <variant>

#include "media/exchange.h"
#include "media/result_rows.h"

namespace vitrell::panel {
namespace {

enum class Numbers { kBytes, kWords, kFloats };

// What a result is written as; any float shows all that half ones hold.
constexpr std::array kTypes = {media::SampleType::kByte, media::SampleType::kWord,
                               media::SampleType::kFloat};
constexpr double kWhite16 = 32768;
constexpr const char* kNames[] = {"R", "G", "B", "A"};
using Rgba = std::array<double, 4>;

Numbers NumbersOf(const SourceFrame& frame) {
  if (frame.picture == nullptr) return frame.world.Deep() ? Numbers::kWords : Numbers::kBytes;
  const media::Samples& samples = frame.picture->samples;
  if (std::holds_alternative<std::vector<uint8_t>>(samples)) return Numbers::kBytes;
  return std::holds_alternative<std::vector<uint16_t>>(samples) ? Numbers::kWords
                                                                : Numbers::kFloats;
}

double NumberAt(const void* samples, std::size_t at, Numbers numbers) {
  switch (numbers) {
    case Numbers::kBytes:
      return static_cast<const std::uint8_t*>(samples)[at];
    case Numbers::kWords:
      return static_cast<const std::uint16_t*>(samples)[at];
    case Numbers::kFloats:
      break;
  }
  return static_cast<double>(static_cast<const float*>(samples)[at]);
}

template <typename Pixel>
Rgba OfPixel(const Pixel& pixel) {
  return {static_cast<double>(pixel.red), static_cast<double>(pixel.green),
          static_cast<double>(pixel.blue), static_cast<double>(pixel.alpha)};
}

// A pixel of a world in the numbers of a file.
Rgba OfWorld(const headless::WorldBuffer& world, int x, int y, Numbers numbers) {
  if (!world.Deep()) return OfPixel(world.At8(x, y));
  const double white = numbers == Numbers::kFloats ? 1 : 65535;
  Rgba rgba = OfPixel(world.At16(x, y));
  for (double& value : rgba) {
    value = value * white / kWhite16;
    if (numbers == Numbers::kWords) value = std::round(value);
  }
  return rgba;
}

// Whether the frame comes from a file that holds this pixel.
bool IsInFile(const SourceFrame& frame, int x, int y) {
  if (frame.picture == nullptr) return false;
  const media::Window data = frame.picture->Data();
  return x >= data.x && y >= data.y && x < data.Right() && y < data.Bottom();
}

// What the file itself holds, which may be brighter than white; the world's where it holds nothing.
Rgba OfFile(const SourceFrame& frame, int x, int y, Numbers numbers) {
  if (!IsInFile(frame, x, y)) return OfWorld(frame.world, x, y, numbers);
  const media::Picture& picture = *frame.picture;
  const media::Window data = picture.Data();
  const int column = x - data.x;
  const int row = y - data.y;
  const std::size_t begin = (static_cast<std::size_t>(row) * static_cast<std::size_t>(data.width) +
                             static_cast<std::size_t>(column)) *
                            picture.Channels();
  const auto sample = [&](int channel) {
    if (channel < 0) return 0.0;
    const std::size_t at = begin + static_cast<std::size_t>(channel);
    return std::visit(
        [at](const auto& samples) {
          return static_cast<double>(static_cast<float>(samples.at(at)));
        },
        picture.samples);
  };
  const media::ChannelLayout& layout = picture.layout;
  return {sample(layout.red), sample(layout.green), sample(layout.blue), sample(layout.alpha)};
}

// As a file of the same kind gets it, by the code that writes one: what the effect left as it was
// keeps the file's number.
Rgba OfResult(const SourceFrame& frame, const headless::WorldBuffer& result, int x, int y,
              Numbers numbers) {
  if (!IsInFile(frame, x, y)) return OfWorld(result, x, y, numbers);
  const media::Picture& picture = *frame.picture;
  const media::ChannelLayout& layout = picture.layout;
  media::OutputForm form{.type = kTypes.at(static_cast<std::size_t>(numbers)),
                         .straight = picture.straight,
                         .channels = {{media::Role::kRed, layout.red},
                                      {media::Role::kGreen, layout.green},
                                      {media::Role::kBlue, layout.blue}}};
  if (layout.HasAlpha()) form.channels.push_back({media::Role::kAlpha, layout.alpha});
  const media::Window data = picture.Data();
  media::ResultRows rows(picture, frame.world, result, form);
  const void* row = rows.Take(y - data.y, y - data.y + 1);
  const std::size_t begin = static_cast<std::size_t>(x - data.x) * form.channels.size();
  Rgba rgba{};
  for (std::size_t i = 0; i < form.channels.size(); ++i) {
    rgba[i] = NumberAt(row, begin + i, numbers);
  }
  return rgba;
}

QString TextOf(const Rgba& rgba, bool hasAlpha, Numbers numbers) {
  QString text;
  for (std::size_t i = 0; i < (hasAlpha ? 4U : 3U); ++i) {
    text += QString("  %1 ").arg(kNames[i]);
    text += numbers == Numbers::kFloats ? QString::number(rgba[i], 'f', 4)
                                        : QString::number(static_cast<qint64>(rgba[i]));
  }
  return text.mid(2);
}

}  // namespace

QString ProbeText(const SourceFrame& frame, const headless::WorldBuffer* result, int x, int y) {
  if (x < 0 || y < 0 || x >= frame.Width() || y >= frame.Height()) return {};
  const Numbers numbers = NumbersOf(frame);
  const bool hasAlpha = frame.picture != nullptr && frame.picture->layout.HasAlpha();
  QString text = QString("%1, %2   ").arg(x).arg(y);
  text += TextOf(OfFile(frame, x, y, numbers), hasAlpha, numbers);
  if (result == nullptr) return text;
  return text + QString("   \u2192   ") +
         TextOf(OfResult(frame, *result, x, y, numbers), hasAlpha, numbers);
}

}  // namespace vitrell::panel
