// Reads of a world at any position: by address, by value, by bilinear sample.
#include "literal/base/pixel_access.h"

#include "literal/base/truncate.h"

namespace vitrell::literal {
namespace {

bool Inside(const World& world, std::int64_t row, std::int64_t column) {
  return row >= 0 && row < world.height && column >= 0 && column < world.width;
}

std::int64_t Fold(std::int64_t position, std::int64_t size) {
  while (!(position >= 0 && position < size)) {
    if (position < 0) {
      position = -position;
    } else {
      position = 2 * size - 1 - position;
    }
  }
  return position;
}

}  // namespace

void RecomputePosition(const World& world, std::int64_t& row, std::int64_t& column) {
  if (world.width <= 0 || world.height <= 0) {
    return;
  }
  row = Fold(row, world.height);
  column = Fold(column, world.width);
}

const Pixel* GetPointerFromDataP(const World& world, std::int32_t row, std::int32_t column,
                                 std::uint8_t mirror) {
  std::int64_t r = std::int64_t{row} - world.extent.top;
  std::int64_t c = std::int64_t{column} - world.extent.left;
  if (!Inside(world, r, c)) {
    if (mirror != 1) {
      return nullptr;
    }
    RecomputePosition(world, r, c);
  }
  if (!Inside(world, r, c) || !world.HasData()) {
    return nullptr;
  }
  return &world.At(static_cast<std::int32_t>(r), static_cast<std::int32_t>(c));
}

Pixel* GetPointerFromDataP(World& world, std::int32_t row, std::int32_t column,
                           std::uint8_t mirror) {
  const World& readOnly = world;
  return const_cast<Pixel*>(GetPointerFromDataP(readOnly, row, column, mirror));
}

Pixel GetPointerFromData(const World& world, std::int32_t row, std::int32_t column,
                         std::uint8_t mirror) {
  std::int64_t r = std::int64_t{row} - world.extent.top;
  std::int64_t c = std::int64_t{column} - world.extent.left;
  const Pixel* pixel = nullptr;
  if (Inside(world, r, c)) {
    pixel = world.HasData() ? &world.At(static_cast<std::int32_t>(r), static_cast<std::int32_t>(c))
                            : nullptr;
  } else if (mirror == 1 && world.width > 0 && world.height > 0) {
    RecomputePosition(world, r, c);
    pixel = GetPointerFromDataP(world, static_cast<std::int32_t>(r), static_cast<std::int32_t>(c),
                                mirror);
  }
  return pixel == nullptr ? Pixel{} : *pixel;
}

void GetPointerFromDataDP(const World& world, double row, double column, Pixel& out,
                          std::uint8_t mirror) {
  std::int32_t i = TruncateToInt(row);
  if (i < 0) {
    i = WrapSubtract(i, 1);
  }
  std::int32_t j = TruncateToInt(column);
  if (j < 0) {
    j = WrapSubtract(j, 1);
  }
  const Pixel* nw = GetPointerFromDataP(world, i, j, mirror);
  const Pixel* ne = GetPointerFromDataP(world, i, WrapAdd(j, 1), mirror);
  const Pixel* sw = GetPointerFromDataP(world, WrapAdd(i, 1), j, mirror);
  const Pixel* se = GetPointerFromDataP(world, WrapAdd(i, 1), WrapAdd(j, 1), mirror);
  if ((i == 0 || j == 0) && nw != nullptr) {
    out = *nw;
    return;
  }
  if (nw == nullptr || ne == nullptr || sw == nullptr || se == nullptr) {
    return;
  }
  const double fy = row - i;
  const double fx = column - j;
  for (int n = 0; n < 4; ++n) {
    const double sample = ((1 - fy) * (1 - fx)) * nw->channel[n] +
                          ((1 - fy) * fx) * ne->channel[n] + (fy * (1 - fx)) * sw->channel[n] +
                          (fy * fx) * se->channel[n];
    out.channel[n] = ChannelFromReal(sample, world.deep);
  }
}

}  // namespace vitrell::literal
