// One frame rendered twice: by the effect module and as the literal versions define it.
#include "blur/render_case.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <sstream>

#include "literal/render/render_driver.h"
#include "literal/render/settings.h"

namespace vitrell {
namespace {

using headless::IterateOrder;
using headless::WorldBuffer;
using literal::Pixel;
using literal::World;

std::shared_ptr<const headless::EffectModule> SharedModule() {
  static const auto module = std::make_shared<const headless::EffectModule>(VITRELL_MODULE_PATH);
  return module;
}

literal::Maths HostMaths() {
  const PF_ANSICallbacksSuite1& maths = headless::HostMaths();
  return {maths.sin, maths.cos, maths.tan, maths.atan, maths.sqrt, maths.pow};
}

World EmptyWorld(std::int32_t width, std::int32_t height, bool deep) {
  World world;
  world.deep = deep;
  world.width = width;
  world.height = height;
  world.extent = {0, 0, width, height};
  world.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  return world;
}

WorldBuffer ToBuffer(const World& world, const headless::WorldLayout& layout) {
  WorldBuffer buffer(world.width, world.height, world.deep, layout);
  for (std::int32_t y = 0; y < world.height; ++y) {
    for (std::int32_t x = 0; x < world.width; ++x) {
      const std::uint16_t* channel = world.At(y, x).channel;
      if (world.deep) {
        buffer.At16(x, y) = {channel[0], channel[1], channel[2], channel[3]};
      } else {
        buffer.At8(x, y) = {
            static_cast<std::uint8_t>(channel[0]), static_cast<std::uint8_t>(channel[1]),
            static_cast<std::uint8_t>(channel[2]), static_cast<std::uint8_t>(channel[3])};
      }
    }
  }
  return buffer;
}

World FromBuffer(const WorldBuffer& buffer) {
  World world = EmptyWorld(buffer.Width(), buffer.Height(), buffer.Deep());
  for (std::int32_t y = 0; y < world.height; ++y) {
    for (std::int32_t x = 0; x < world.width; ++x) {
      if (world.deep) {
        const PF_Pixel16& p = buffer.At16(x, y);
        world.At(y, x) = MakePixel(p.alpha, p.red, p.green, p.blue);
      } else {
        const PF_Pixel& p = buffer.At8(x, y);
        world.At(y, x) = MakePixel(p.alpha, p.red, p.green, p.blue);
      }
    }
  }
  return world;
}

// Seeded numbers that are the same with every standard library.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : engine_(seed) {}
  // From low to high, both included.
  int Roll(int low, int high) {
    return low + static_cast<int>(engine_() % static_cast<std::uint64_t>(high - low + 1));
  }
  Pixel RollPixel(int low, int high) {
    Pixel pixel;
    for (std::uint16_t& channel : pixel.channel) {
      channel = static_cast<std::uint16_t>(Roll(low, high));
    }
    return pixel;
  }

 private:
  std::mt19937_64 engine_;
};

Pixel HolePixel(Dice& dice, std::int32_t x, std::int32_t y, int white) {
  Pixel pixel = dice.RollPixel(0, white);
  const bool hole = (x / 5 + y / 3) % 3 == 0;
  if (hole) pixel.channel[0] = 0;
  if (hole && (x / 10) % 2 == 0) pixel = Pixel{};
  return pixel;
}

Pixel BrightToDarkPixel(Dice& dice, std::int32_t x, std::int32_t width, int white) {
  Pixel pixel = dice.RollPixel(white / 2, white);
  if (x > width / 3) pixel = MakePixel(0, 0, 0, 0);
  if (x > width / 3 && dice.Roll(0, 40) == 0) pixel = dice.RollPixel(0, std::max(3, white / 100));
  pixel.channel[0] = static_cast<std::uint16_t>(white);
  return pixel;
}

const char* OrderName(IterateOrder order) {
  switch (order) {
    case IterateOrder::kRows:
      return "rows";
    case IterateOrder::kReversedRows:
      return "reversed rows";
    case IterateOrder::kShuffledPixels:
      return "shuffled pixels";
    case IterateOrder::kSinglePixels:
      return "single pixels";
  }
  return "?";
}

}  // namespace

Pixel MakePixel(int alpha, int red, int green, int blue) {
  Pixel pixel;
  pixel.channel[0] = static_cast<std::uint16_t>(alpha);
  pixel.channel[1] = static_cast<std::uint16_t>(red);
  pixel.channel[2] = static_cast<std::uint16_t>(green);
  pixel.channel[3] = static_cast<std::uint16_t>(blue);
  return pixel;
}

World MakePicture(Pattern pattern, std::int32_t width, std::int32_t height, bool deep,
                  std::uint64_t seed) {
  World world = EmptyWorld(width, height, deep);
  Dice dice(seed);
  const int white = deep ? 32768 : 255;
  const Pixel flat = MakePixel(white / 2, white / 3, white / 5, white - 1);
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      Pixel& pixel = world.At(y, x);
      switch (pattern) {
        case Pattern::kNoise:
          pixel = dice.RollPixel(0, white);
          break;
        case Pattern::kHoles:
          pixel = HolePixel(dice, x, y, white);
          break;
        case Pattern::kBrightToDark:
          pixel = BrightToDarkPixel(dice, x, width, white);
          break;
        case Pattern::kNearBlack:
          pixel = dice.RollPixel(0, 3);
          break;
        case Pattern::kNearWhite:
          pixel = dice.RollPixel(white - 2, white);
          break;
        case Pattern::kAboveWhite:
          pixel = deep ? dice.RollPixel(20000, 65535) : dice.RollPixel(white - 2, white);
          break;
        case Pattern::kUniform:
          pixel = flat;
          break;
        case Pattern::kTransparent:
          pixel = dice.RollPixel(0, white);
          pixel.channel[0] = 0;
          break;
        case Pattern::kBlack:
          pixel = MakePixel(white, 0, 0, 0);
          break;
      }
    }
  }
  return world;
}

World MakeGreyRow(const std::vector<int>& values) {
  World world = EmptyWorld(static_cast<std::int32_t>(values.size()), 1, false);
  for (std::size_t i = 0; i < values.size(); ++i) {
    world.pixels[i] = MakePixel(255, values[i], values[i], values[i]);
  }
  return world;
}

std::vector<int> Reds(const World& world) {
  std::vector<int> reds;
  for (const Pixel& pixel : world.pixels) reds.push_back(pixel.channel[1]);
  return reds;
}

RenderCase::RenderCase() : host_(std::make_unique<headless::EffectHost>(SharedModule())) {
  for (const char* group : {"fast-blur", "realistic-blur", "optical-distortion", "trail",
                            "directional-blur", "lightness", "color", "chromatic-aberration"}) {
    Set(std::string(group) + ".visible", 0);
  }
  Set("lens.type", 1);
  for (const char* point : {"lens.position", "optical-distortion.center", "trail.center"}) {
    SetPoint(point, 0, 0);
  }
  changes_.clear();
}

RenderCase& RenderCase::Set(std::string_view path, double value) {
  const int index = host_->IndexOf(path);
  switch (host_->Parameters().at(static_cast<std::size_t>(index)).type) {
    case PF_Param_POPUP:
      host_->SetPopup(index, static_cast<A_long>(value));
      break;
    case PF_Param_CHECKBOX:
      host_->SetCheckbox(index, value != 0);
      break;
    case PF_Param_ANGLE:
      host_->SetAngleDegrees(index, value);
      break;
    default:
      host_->SetFloat(index, value);
  }
  std::ostringstream text;
  text << path << "=" << value;
  changes_.push_back(text.str());
  return *this;
}

RenderCase& RenderCase::SetPoint(std::string_view path, int x, int y) {
  // Half a pixel further out, so that the truncation after the odd divisor gives the whole pixel.
  const auto outward = [](int pixel) { return pixel < 0 ? pixel - 0.5 : pixel + 0.5; };
  host_->SetPointPixels(host_->IndexOf(path), outward(x), outward(y));
  changes_.push_back(std::string(path) + "=" + std::to_string(x) + "," + std::to_string(y));
  return *this;
}

RenderCase& RenderCase::SetCircle(int x, int y, double radiusPx, int pictureWidth) {
  Set("lens.type", 2);
  Set("lens.scale", 100 * radiusPx / (0.35 * pictureWidth));
  return SetPoint("lens.position", x, y);
}

RenderCase& RenderCase::SetCustomLens(const World& lens) {
  lens_ = lens;
  Set("lens.type", 6);
  return Set("lens.placement", 2);
}

World RenderCase::Actual(const World& input) {
  const WorldBuffer source = ToBuffer(input, layout_);
  WorldBuffer output(input.width, input.height, input.deep, layout_);
  std::optional<WorldBuffer> lens;
  if (lens_) lens = ToBuffer(*lens_, {});
  const headless::RenderResult result =
      host_->Render(source, output, lens ? &*lens : nullptr, options_);
  EXPECT_TRUE(result.Ok()) << result.description << "\n" << Describe(input);
  for (const std::string& complaint : result.complaints) {
    ADD_FAILURE() << complaint << "\n" << Describe(input);
  }
  return FromBuffer(output);
}

World RenderCase::Expected(const World& input) {
  std::vector<const PF_ParamDef*> records;
  for (std::size_t i = 0; i < host_->Parameters().size(); ++i) {
    records.push_back(&host_->Record(static_cast<int>(i)));
  }
  literal::RenderInputs inputs;
  inputs.input = input;
  inputs.output = EmptyWorld(input.width, input.height, input.deep);
  inputs.settings = literal::SettingsFromParams(records.data());
  inputs.maths = HostMaths();
  inputs.newWorldDeep =
      input.deep && options_.newWorldDepth == headless::NewWorldDepth::kRenderDepth;
  if (lens_) {
    inputs.custom = &*lens_;
    inputs.customFlags = ToBuffer(*lens_, {}).Def().world_flags;
  }
  const literal::RenderOutcome outcome = literal::Render(inputs);
  EXPECT_EQ(outcome.error, 0);
  return outcome.output;
}

void RenderCase::ExpectExact(const World& input) {
  ExpectSamePicture(Expected(input), Actual(input), Describe(input));
}

void RenderCase::ExpectExactInEveryOrder(const World& input) {
  const World expected = Expected(input);
  const headless::RenderOptions before = options_;
  for (const int threads : {1, 2, 7}) {
    for (const IterateOrder order : {IterateOrder::kRows, IterateOrder::kReversedRows,
                                     IterateOrder::kShuffledPixels, IterateOrder::kSinglePixels}) {
      options_.threads = threads;
      options_.order = order;
      ExpectSamePicture(expected, Actual(input), Describe(input));
    }
  }
  options_ = before;
}

std::string RenderCase::Describe(const World& input) const {
  std::ostringstream text;
  text << input.width << "x" << input.height << (input.deep ? " 16-bit" : " 8-bit") << ", "
       << options_.threads << " threads, " << OrderName(options_.order) << " (seed "
       << options_.seed << "):";
  for (const std::string& change : changes_) text << " " << change;
  return text.str();
}

void ExpectSamePicture(const World& expected, const World& actual, const std::string& what) {
  const std::string difference =
      headless::DescribeDifference(ToBuffer(expected, {}), ToBuffer(actual, {}));
  EXPECT_TRUE(difference.empty()) << what << "\n" << difference;
}

bool Differ(const World& a, const World& b) {
  return !headless::SamePixels(ToBuffer(a, {}), ToBuffer(b, {}));
}

}  // namespace vitrell
