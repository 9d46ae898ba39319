// Random pictures: their sizes, layouts in memory, extent hints and pixels.
#include "whole/random_pictures.h"

namespace vitrell::whole {
namespace {

using headless::WorldBuffer;
using headless::WorldLayout;

// The style of a random image.
struct Look {
  std::int32_t white = 255;
  std::int32_t highest = 255;           // Above white now and then in 16 bits.
  std::int32_t transparentPercent = 0;  // Pixels without alpha; their colours stay or vanish.
  bool clearTransparent = false;
  bool opaque = false;
  std::int32_t blockSize = 1;  // Side of the equal blocks that the picture is made of.
};

Look RandomLook(Dice& dice, bool deep, std::int32_t aboveWhitePercent) {
  Look look;
  look.white = deep ? 32768 : 255;
  look.highest = deep && dice.Chance(aboveWhitePercent) ? 65535 : look.white;
  if (dice.Chance(10)) {
    look.highest = look.white / 64;  // Nearly black.
  }
  look.transparentPercent = dice.Pick<std::int32_t>({0, 0, 10, 60, 95});
  look.clearTransparent = dice.Chance(50);
  look.opaque = dice.Chance(40);
  look.blockSize = dice.Pick<std::int32_t>({1, 1, 3, 9});
  return look;
}

}  // namespace

PictureSize RandomSize(Dice& dice) {
  switch (dice.Below(10)) {
    case 0:
      return {dice.Between(1, 4), dice.Between(1, 4)};
    case 1:
    case 2:
    case 3:
      return {dice.Between(1, 20), dice.Between(1, 20)};
    case 8:
    case 9:
      return {dice.Between(1, 97), dice.Between(1, 61)};
    default:
      return {dice.Between(5, 48), dice.Between(5, 36)};
  }
}

WorldLayout RandomLayout(Dice& dice) {
  WorldLayout layout;
  layout.rowPadding = dice.Pick<std::int32_t>({0, 0, 4, 8, 16, 64});
  if (dice.Chance(20)) {
    layout.guardPages =
        dice.Chance(50) ? headless::GuardPages::kAtEnd : headless::GuardPages::kAtStart;
  } else {
    layout.baseOffset = dice.Pick<std::int32_t>({0, 0, 4, 8, 32});
  }
  return layout;
}

PF_LRect RandomExtent(Dice& dice, PictureSize size) {
  if (dice.Chance(70)) {
    return {0, 0, size.width, size.height};
  }
  if (dice.Chance(20)) {
    return {-dice.Below(6), -dice.Below(6), size.width + dice.Below(6),
            size.height + dice.Below(6)};
  }
  const std::int32_t left = dice.Below(size.width);
  const std::int32_t top = dice.Below(size.height);
  return {left, top, dice.Between(left + 1, size.width), dice.Between(top + 1, size.height)};
}

void Paint(Dice& dice, std::int32_t aboveWhitePercent, WorldBuffer& world) {
  const Look look = RandomLook(dice, world.Deep(), aboveWhitePercent);
  const auto channel = [&] {
    return static_cast<std::uint16_t>(dice.Chance(10) ? look.highest
                                                      : dice.Between(0, look.highest));
  };
  const std::int32_t block = look.blockSize;
  for (std::int32_t y = 0; y < world.Height(); ++y) {
    for (std::int32_t x = 0; x < world.Width(); ++x) {
      const std::int32_t fromX = x - x % block;
      const std::int32_t fromY = y - y % block;
      PF_Pixel16 pixel{channel(), channel(), channel(), channel()};
      if (dice.Chance(look.transparentPercent)) {
        pixel.alpha = 0;
        if (look.clearTransparent) {
          pixel = {};
        }
      } else if (look.opaque) {
        pixel.alpha = static_cast<std::uint16_t>(look.white);
      }
      if (world.Deep()) {
        world.At16(x, y) = fromX == x && fromY == y ? pixel : world.At16(fromX, fromY);
      } else {
        const auto byte = [](std::uint16_t value) { return static_cast<A_u_char>(value); };
        world.At8(x, y) = fromX == x && fromY == y ? PF_Pixel{byte(pixel.alpha), byte(pixel.red),
                                                              byte(pixel.green), byte(pixel.blue)}
                                                   : world.At8(fromX, fromY);
      }
    }
  }
}

WorldBuffer RandomCustomLayer(Dice& dice, PictureSize size, bool deep) {
  const PictureSize layerSize =
      dice.Chance(30) ? size : PictureSize{dice.Between(1, 60), dice.Between(1, 40)};
  const bool layerDeep = dice.Chance(75) ? deep : !deep;
  WorldBuffer layer(layerSize.width, layerSize.height, layerDeep, RandomLayout(dice));
  Paint(dice, 40, layer);
  if (dice.Chance(30)) {
    layer.SetWorldFlags(layer.Def().world_flags | PF_WorldFlag_WRITEABLE);
  }
  return layer;
}

}  // namespace vitrell::whole
