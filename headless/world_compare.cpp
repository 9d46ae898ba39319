// Compares two worlds and describes the difference in enough detail for a failing test.
#include <cstring>
#include <sstream>

#include "headless/world_buffer.h"

namespace vitrell::headless {
namespace {

constexpr std::int32_t kDumpWholeUpTo = 8;  // Most rows and columns shown whole.

std::string PixelText(const WorldBuffer& world, std::int32_t x, std::int32_t y) {
  std::ostringstream text;
  const auto write = [&text](const auto& pixel) {
    text << int{pixel.alpha} << ',' << int{pixel.red} << ',' << int{pixel.green} << ','
         << int{pixel.blue};
  };
  if (world.Deep()) {
    write(world.At16(x, y));
  } else {
    write(world.At8(x, y));
  }
  return text.str();
}

std::string ShapeText(const WorldBuffer& world) {
  return std::to_string(world.Width()) + " x " + std::to_string(world.Height()) +
         (world.Deep() ? " 16-bit" : " 8-bit");
}

bool SameShape(const WorldBuffer& a, const WorldBuffer& b) {
  return a.Width() == b.Width() && a.Height() == b.Height() && a.Deep() == b.Deep();
}

bool SamePixel(const WorldBuffer& a, const WorldBuffer& b, std::int32_t x, std::int32_t y) {
  const std::size_t offset = static_cast<std::size_t>(x) * a.PixelBytes();
  return std::memcmp(a.Row(y) + offset, b.Row(y) + offset, a.PixelBytes()) == 0;
}

void DumpWhole(std::ostringstream& text, const char* title, const WorldBuffer& world) {
  text << title << ":\n";
  for (std::int32_t y = 0; y < world.Height(); ++y) {
    for (std::int32_t x = 0; x < world.Width(); ++x) text << "  " << PixelText(world, x, y);
    text << '\n';
  }
}

}  // namespace

bool SamePixels(const WorldBuffer& a, const WorldBuffer& b) {
  if (!SameShape(a, b)) return false;
  const std::size_t rowBytes = static_cast<std::size_t>(a.Width()) * a.PixelBytes();
  for (std::int32_t y = 0; y < a.Height(); ++y) {
    if (std::memcmp(a.Row(y), b.Row(y), rowBytes) != 0) return false;
  }
  return true;
}

std::string DescribeDifference(const WorldBuffer& expected, const WorldBuffer& actual,
                               int maxShown) {
  if (!SameShape(expected, actual)) {
    return "expected a picture of " + ShapeText(expected) + ", got one of " + ShapeText(actual) +
           "\n";
  }
  if (SamePixels(expected, actual)) return {};
  std::ostringstream lines;
  std::int64_t differing = 0;
  for (std::int32_t y = 0; y < expected.Height(); ++y) {
    for (std::int32_t x = 0; x < expected.Width(); ++x) {
      if (SamePixel(expected, actual, x, y)) continue;
      if (differing++ >= maxShown) continue;
      lines << "  (" << x << ", " << y << ") expected " << PixelText(expected, x, y) << ", got "
            << PixelText(actual, x, y) << '\n';
    }
  }
  std::ostringstream text;
  text << differing << " of " << std::int64_t{expected.Width()} * expected.Height()
       << " pixels differ (alpha,red,green,blue):\n"
       << lines.str();
  if (expected.Width() <= kDumpWholeUpTo && expected.Height() <= kDumpWholeUpTo) {
    DumpWhole(text, "expected", expected);
    DumpWhole(text, "got", actual);
  }
  return text.str();
}

}  // namespace vitrell::headless
