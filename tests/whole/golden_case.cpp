// Renders specified by a settings file, by the command line and by the literal version.
#include "whole/golden_case.h"

#include <OpenImageIO/imageio.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include "literal/render/render_driver.h"
#include "look/preset.h"
#include "look/settings.h"
#include "whole/literal_bridge.h"

namespace vitrell::whole {
namespace {

constexpr std::uint16_t kDeepWhite = 32768;

// Times the quotient of the two whites, rounded to nearest.
std::uint16_t Rescale(std::uint32_t value, std::uint32_t white, std::uint32_t newWhite) {
  return static_cast<std::uint16_t>((2 * value * newWhite + white) / (2 * white));
}

template <typename Sample>
literal::World ConvertSamples(const FilePicture& picture, const std::vector<Sample>& samples,
                              bool deep) {
  constexpr std::uint32_t kWhite = std::numeric_limits<Sample>::max();
  literal::World world;
  world.deep = deep;
  world.width = picture.width;
  world.height = picture.height;
  world.extent = {0, 0, picture.width, picture.height};
  for (std::size_t i = 0; i + 3 < samples.size(); i += 4) {
    const auto channel = [&](std::size_t c) {
      return Rescale(samples[i + c], kWhite, deep ? kDeepWhite : 255);
    };
    world.pixels.push_back({{channel(3), channel(0), channel(1), channel(2)}});
  }
  return world;
}

// Positions in percent become pixels here, so that the literal render does not lean on the host.
void PlacePoints(headless::EffectHost& host, const FilePicture& input) {
  for (const headless::Parameter& parameter : host.Parameters()) {
    if (parameter.type != PF_Param_POINT) {
      continue;
    }
    if (const std::optional<headless::PointPercent> percent = host.PercentOf(parameter.index)) {
      host.SetPointPixels(parameter.index, percent->x * input.width / 100,
                          percent->y * input.height / 100);
    }
  }
}

// Gives the values of a settings file to the host. The custom layer that it names, if any.
std::optional<literal::World> ApplySettings(const std::filesystem::path& settings,
                                            const FilePicture& input, bool deep,
                                            headless::EffectHost& host) {
  const look::Panel panel = look::MakePanel(host.Parameters());
  look::Settings values(panel);
  look::LoadPreset(settings, values);
  values.Apply(host, input.width, input.height);
  PlacePoints(host, input);
  const auto& layer = std::get<look::LayerValue>(values.ValueOf(*panel.Find("lens.custom-layer")));
  if (layer.path.empty()) return std::nullopt;
  return WorldOf(ReadFilePicture(layer.path), deep);
}

}  // namespace

const std::vector<std::string>& GoldenNames() {
  static const std::vector<std::string> kNames = {
      "0001-lens-circle",
      "0002-lens-rectangle-wide-16bit",
      "0003-lens-rectangle-tall-inverted",
      "0004-lens-triangle-16bit",
      "0005-lens-custom-centred",
      "0006-lens-custom-stretched-16bit",
      "0007-fast-blur-mapped",
      "0008-realistic-blur",
      "0009-realistic-blur-mapped-16bit",
      "0010-optical-distortion",
      "0011-trail",
      "0012-directional-blur-16bit",
      "0013-lightness-screen",
      "0014-color-multiply-16bit",
      "0015-chromatic-aberration",
      "0016-everything-16bit",
  };
  return kNames;
}

std::filesystem::path GoldenFolder(const std::string& name) {
  return std::filesystem::path(VITRELL_GOLDEN_FOLDER) / name;
}

bool IsDeepGolden(const std::string& name) { return name.ends_with("-16bit"); }

FilePicture ReadFilePicture(const std::filesystem::path& file) {
  OIIO::ImageSpec config;
  config["oiio:UnassociatedAlpha"] = 1;
  const std::unique_ptr<OIIO::ImageInput> reader = OIIO::ImageInput::open(file.string(), &config);
  if (reader == nullptr) {
    ADD_FAILURE() << file << " cannot be read: " << OIIO::geterror();
    return {};
  }
  const OIIO::ImageSpec& spec = reader->spec();
  FilePicture picture{spec.width, spec.height, spec.nchannels, {}};
  const auto count =
      static_cast<std::size_t>(spec.image_pixels()) * static_cast<std::size_t>(spec.nchannels);
  bool read = false;
  if (spec.format == OIIO::TypeDesc::UINT8) {
    std::vector<std::uint8_t> samples(count);
    read = reader->read_image(0, 0, 0, spec.nchannels, OIIO::TypeDesc::UINT8, samples.data());
    picture.samples = std::move(samples);
  } else {
    std::vector<std::uint16_t> samples(count);
    read = reader->read_image(0, 0, 0, spec.nchannels, OIIO::TypeDesc::UINT16, samples.data());
    picture.samples = std::move(samples);
  }
  EXPECT_TRUE(read) << file << ": " << reader->geterror();
  EXPECT_EQ(spec.nchannels, 4) << file;
  return picture;
}

literal::World WorldOf(const FilePicture& picture, bool deep) {
  return std::visit([&](const auto& samples) { return ConvertSamples(picture, samples, deep); },
                    picture.samples);
}

GoldenResults RenderGolden(const std::filesystem::path& settings, const FilePicture& input,
                           bool deep) {
  headless::EffectHost host{std::filesystem::path(VITRELL_MODULE_PATH)};
  const std::optional<literal::World> customWorld = ApplySettings(settings, input, deep, host);
  std::optional<headless::WorldBuffer> custom;
  if (customWorld.has_value()) custom.emplace(FromLiteral(*customWorld));
  const headless::WorldBuffer given = FromLiteral(WorldOf(input, deep));
  headless::WorldBuffer output(input.width, input.height, deep);
  const headless::RenderOptions options;
  literal::RenderOutcome expected = literal::Render(
      MakeRenderInputs(host, given, output, customWorld.has_value() ? &*customWorld : nullptr,
                       custom.has_value() ? custom->Def().world_flags : 0, options));
  EXPECT_EQ(expected.error, 0);
  const headless::RenderResult result =
      host.Render(given, output, custom.has_value() ? &*custom : nullptr, options);
  EXPECT_EQ(result.error, 0) << result.description;
  GoldenResults results{std::move(expected.output), ToLiteral(output)};
  CutAtWhite(results.expected);
  CutAtWhite(results.actual);
  return results;
}

GoldenRecord DescribeGolden(const std::string& name, const FilePicture& input) {
  const bool deep = IsDeepGolden(name);
  headless::EffectHost host{std::filesystem::path(VITRELL_MODULE_PATH)};
  GoldenRecord record;
  record.name = name;
  record.custom = ApplySettings(GoldenFolder(name) / "settings.json", input, deep, host);
  record.controls = ReadControls(host);
  record.input = WorldOf(input, deep);
  return record;
}

}  // namespace vitrell::whole
