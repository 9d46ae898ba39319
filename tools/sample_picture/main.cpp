// Draws Vitrell's sample picture, a night street after rain, and the clip of the same street.
#include <OpenImageIO/imageio.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <iostream>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "random.h"
#include "scene.h"

namespace vitrell::sample {
namespace {

void DrawScene(Canvas& canvas, double time) {
  DrawSky(canvas);
  DrawHouses(canvas);
  DrawShops(canvas);
  DrawPavement(canvas);
  CutAlpha(canvas);
  DrawSigns(canvas);
  DrawBulbs(canvas, time);
  DrawPeople(canvas, time);
  DrawLamps(canvas);
  DrawCar(canvas, time);
  canvas.Bloom(5, 1.2, 0.30);
  canvas.Bloom(26, 1.4, 0.24);
  DrawRoad(canvas);
  DrawFence(canvas);
}

// A film-like tone curve: linear in the dark, rolling off towards white. The square root stands for
// the display's gamma.
double Develop(double light) {
  const double exposed = light * 1.35;
  return std::sqrt(Clamp01(exposed * (1 + exposed / 14) / (1 + exposed)));
}

// Red, green, blue and straight alpha, row-major; noise dithers the steps of 8 bits.
template <typename Channel>
std::vector<Channel> Quantise(Canvas& canvas, bool opaque) {
  constexpr double kWhite = std::numeric_limits<Channel>::max();
  std::vector<Channel> rows;
  rows.reserve(static_cast<std::size_t>(canvas.Width()) *
               static_cast<std::size_t>(canvas.Height()) * 4);
  for (int y = 0; y < canvas.Height(); ++y) {
    for (int x = 0; x < canvas.Width(); ++x) {
      const CanvasPixel& pixel = canvas.At(x, y);
      std::uint32_t seed = 501;
      for (const double light : {pixel.light.r, pixel.light.g, pixel.light.b}) {
        const double dither = HashUnit(x, y, seed++);
        rows.push_back(static_cast<Channel>(std::min(kWhite, Develop(light) * kWhite + dither)));
      }
      if (!opaque) rows.push_back(static_cast<Channel>(Clamp01(pixel.alpha) * kWhite + 0.5));
    }
  }
  return rows;
}

bool Write(const std::string& path, Canvas& canvas, int depth, bool opaque) {
  const OIIO::TypeDesc type = depth == 16 ? OIIO::TypeDesc::UINT16 : OIIO::TypeDesc::UINT8;
  OIIO::ImageSpec form(canvas.Width(), canvas.Height(), opaque ? 3 : 4, type);
  form.attribute("oiio:UnassociatedAlpha", 1);
  const std::unique_ptr<OIIO::ImageOutput> output = OIIO::ImageOutput::create(path);
  if (!output || !output->open(path, form)) {
    std::cerr << path << ": " << (output ? output->geterror() : OIIO::geterror()) << '\n';
    return false;
  }
  const bool written =
      depth == 16 ? output->write_image(type, Quantise<std::uint16_t>(canvas, opaque).data())
                  : output->write_image(type, Quantise<std::uint8_t>(canvas, opaque).data());
  if (!written || !output->close()) {
    std::cerr << path << ": " << output->geterror() << '\n';
    return false;
  }
  return true;
}

// "street.####.png" with the number in the place of the marks, which there must be.
std::string NameOfFrame(const std::string& pattern, int number) {
  const std::size_t first = pattern.find('#');
  const std::size_t end = pattern.find_first_not_of('#', first);
  std::string digits = std::to_string(number);
  const std::size_t width = (end == std::string::npos ? pattern.size() : end) - first;
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return std::string(pattern).replace(first, width, digits);
}

}  // namespace
}  // namespace vitrell::sample

int main(int argc, char** argv) {
  CLI::App app(
      "Draws Vitrell's sample picture, a night street after rain, or with --frames a clip in which "
      "people walk, bulbs swing and a car drives past.");
  std::string path;
  int width = 1920;
  int height = 1080;
  int depth = 8;
  int frames = 0;
  double rate = 25;
  bool opaque = false;
  app.add_option("OUTPUT", path, "The picture to write, for example street.png or street.####.png")
      ->required();
  app.add_option("--width", width, "Width in pixels")->check(CLI::Range(1, 16384));
  app.add_option("--height", height, "Height in pixels")->check(CLI::Range(1, 16384));
  app.add_option("--depth", depth, "Bits per channel")->check(CLI::IsMember({8, 16}));
  app.add_option("--frames", frames, "Draw this many frames, numbered from 1 in the place of ####")
      ->check(CLI::Range(1, 100000));
  app.add_option("--rate", rate, "Frames per second")->check(CLI::Range(1.0, 1000.0));
  app.add_flag("--opaque", opaque, "Leave the alpha channel out");
  CLI11_PARSE(app, argc, argv);
  if ((frames > 0) != (path.find('#') != std::string::npos)) {
    std::cerr << "A clip takes both --frames and an OUTPUT with #### for the frame's number.\n";
    return 2;
  }
  for (int frame = 0; frame < std::max(frames, 1); ++frame) {
    vitrell::sample::Canvas canvas(width, height);
    vitrell::sample::DrawScene(canvas, frame / rate);
    const std::string name = frames > 0 ? vitrell::sample::NameOfFrame(path, frame + 1) : path;
    if (!vitrell::sample::Write(name, canvas, depth, opaque)) return 1;
  }
  return 0;
}
