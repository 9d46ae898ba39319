// Pixels from one order of channels to another.
#include "panel/model/world_image.h"

#include <QRgba64>
#include <algorithm>
#include <cstdint>

namespace vitrell::panel {
namespace {

constexpr unsigned kWhite16 = 32768;
constexpr unsigned kWhiteWord = 65535;

// Values beyond white, which 16 bits have room for, show as white.
unsigned ToByte(unsigned value) { return std::min(255u, (value * 255 + kWhite16 / 2) / kWhite16); }

quint16 ToWord(unsigned value) {
  return static_cast<quint16>(std::min(kWhiteWord, (value * kWhiteWord + kWhite16 / 2) / kWhite16));
}

std::uint16_t FromWord(unsigned word) {
  return static_cast<std::uint16_t>((word * kWhite16 + kWhiteWord / 2) / kWhiteWord);
}

QRgb ToRgb(const PF_Pixel& pixel) { return qRgba(pixel.red, pixel.green, pixel.blue, pixel.alpha); }

QRgb ToRgb(const PF_Pixel16& pixel) {
  return qRgba(static_cast<int>(ToByte(pixel.red)), static_cast<int>(ToByte(pixel.green)),
               static_cast<int>(ToByte(pixel.blue)), static_cast<int>(ToByte(pixel.alpha)));
}

template <typename Pixel>
QImage Convert(const headless::WorldBuffer& world) {
  QImage image(world.Width(), world.Height(), QImage::Format_ARGB32_Premultiplied);
  unsigned alphas = 255;
  for (int y = 0; y < world.Height(); ++y) {
    const auto* from = reinterpret_cast<const Pixel*>(world.Row(y));
    auto* to = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < world.Width(); ++x) {
      const QRgb rgb = ToRgb(from[x]);
      alphas &= static_cast<unsigned>(qAlpha(rgb));
      to[x] = qPremultiply(rgb);
    }
  }
  // Painting is quicker without alpha.
  if (alphas == 255) image.reinterpretAsFormat(QImage::Format_RGB32);
  return image;
}

QImage StraightImage8(const headless::WorldBuffer& world) {
  QImage image(world.Width(), world.Height(), QImage::Format_ARGB32);
  for (int y = 0; y < world.Height(); ++y) {
    auto* to = reinterpret_cast<QRgb*>(image.scanLine(y));
    const auto* from = reinterpret_cast<const PF_Pixel*>(world.Row(y));
    for (int x = 0; x < world.Width(); ++x) to[x] = ToRgb(from[x]);
  }
  return image;
}

QImage StraightImage16(const headless::WorldBuffer& world) {
  QImage image(world.Width(), world.Height(), QImage::Format_RGBA64);
  for (int y = 0; y < world.Height(); ++y) {
    auto* to = reinterpret_cast<QRgba64*>(image.scanLine(y));
    const auto* from = reinterpret_cast<const PF_Pixel16*>(world.Row(y));
    for (int x = 0; x < world.Width(); ++x) {
      const PF_Pixel16& pixel = from[x];
      to[x] = QRgba64::fromRgba64(ToWord(pixel.red), ToWord(pixel.green), ToWord(pixel.blue),
                                  ToWord(pixel.alpha));
    }
  }
  return image;
}

void Take8(const QImage& image, headless::WorldBuffer& world) {
  for (int y = 0; y < world.Height(); ++y) {
    const auto* from = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    auto* to = reinterpret_cast<PF_Pixel*>(world.Row(y));
    for (int x = 0; x < world.Width(); ++x) {
      to[x] = {static_cast<std::uint8_t>(qAlpha(from[x])), static_cast<std::uint8_t>(qRed(from[x])),
               static_cast<std::uint8_t>(qGreen(from[x])),
               static_cast<std::uint8_t>(qBlue(from[x]))};
    }
  }
}

void Take16(const QImage& image, headless::WorldBuffer& world) {
  for (int y = 0; y < world.Height(); ++y) {
    const auto* from = reinterpret_cast<const QRgba64*>(image.constScanLine(y));
    auto* to = reinterpret_cast<PF_Pixel16*>(world.Row(y));
    for (int x = 0; x < world.Width(); ++x) {
      to[x] = {FromWord(from[x].alpha()), FromWord(from[x].red()), FromWord(from[x].green()),
               FromWord(from[x].blue())};
    }
  }
}

}  // namespace

QImage ImageOf(const headless::WorldBuffer& world) {
  return world.Deep() ? Convert<PF_Pixel16>(world) : Convert<PF_Pixel>(world);
}

headless::WorldBuffer ScaledWorld(const headless::WorldBuffer& world, const QSize& size) {
  const bool deep = world.Deep();
  const QImage straight = deep ? StraightImage16(world) : StraightImage8(world);
  const QImage scaled = straight
                            .convertToFormat(deep ? QImage::Format_RGBA64_Premultiplied
                                                  : QImage::Format_ARGB32_Premultiplied)
                            .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                            .convertToFormat(straight.format());
  headless::WorldBuffer smaller(size.width(), size.height(), deep);
  if (deep) {
    Take16(scaled, smaller);
  } else {
    Take8(scaled, smaller);
  }
  return smaller;
}

}  // namespace vitrell::panel
