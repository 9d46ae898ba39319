// Frames in and out of the headless host's worlds.
#include "frei0r/lens_instance.h"

#include <bit>
#include <cstdio>
#include <cstring>
#include <exception>
#include <utility>

#include "frei0r/interface.h"
#include "look/value_text.h"

namespace vitrell::frei0r {
namespace {

// RGBA in memory to ARGB, and back.
constexpr int kAlphaFirst = std::endian::native == std::endian::little ? 8 : 24;
constexpr int kAlphaLast = 32 - kAlphaFirst;

void RotatePixels(const std::uint32_t* source, std::uint32_t* target, int count, int bits) {
  for (int i = 0; i < count; ++i) target[i] = std::rotl(source[i], bits);
}

std::uint32_t* RowOf(headless::WorldBuffer& world, int y) {
  return reinterpret_cast<std::uint32_t*>(world.Row(y));
}

void FillWorld(const std::uint32_t* frame, headless::WorldBuffer& world) {
  const int width = world.Width();
  for (int y = 0; y < world.Height(); ++y) {
    RotatePixels(frame, RowOf(world, y), width, kAlphaFirst);
    frame += width;
  }
}

void ShowWorld(headless::WorldBuffer& world, std::uint32_t* frame) {
  const int width = world.Width();
  for (int y = 0; y < world.Height(); ++y) {
    RotatePixels(RowOf(world, y), frame, width, kAlphaLast);
    frame += width;
  }
}

// All processors; the worlds that the effect makes need no content, as it writes what it reads.
headless::RenderOptions MakeOptions() {
  headless::RenderOptions options;
  options.threads = 0;
  options.newWorldLayout.fresh = headless::FreshPixels::kUnset;
  options.verifyInputs = false;
  return options;
}

void ShowCustomLens(look::Settings& settings) {
  const look::Control* type = settings.GetPanel().Find(look::kLensType);
  if (type != nullptr) settings.SetValue(*type, look::ParseValue(*type, look::kCustomLens));
}

double ReadDouble(const void* value) {
  double number = 0;
  std::memcpy(&number, value, sizeof(number));
  return number;
}

look::ColourValue ReadColour(const void* value) {
  Colour colour{};
  std::memcpy(&colour, value, sizeof(colour));
  const auto channel = [](float x) { return look::ChannelFromFrei0r(static_cast<double>(x)); };
  return {channel(colour.red), channel(colour.green), channel(colour.blue)};
}

Colour ShowColour(const look::ColourValue& value) {
  const auto channel = [](uint8_t x) { return static_cast<float>(look::Frei0rFromChannel(x)); };
  return {channel(value.red), channel(value.green), channel(value.blue)};
}

}  // namespace

Lens::Lens(std::shared_ptr<const headless::EffectModule> effect)
    : module(std::move(effect)),
      panel(look::MakePanel(headless::EffectHost(module).Parameters())),
      parameters(look::MakeFrei0rParameters(panel)) {}

LensInstance::LensInstance(const Lens& lens, int width, int height, bool hasLayer)
    : lens_(lens),
      host_(lens.module),
      settings_(lens.panel),
      input_(width, height, false),
      output_(width, height, false) {
  if (!hasLayer) return;
  layer_ = std::make_unique<headless::WorldBuffer>(width, height, false);
  ShowCustomLens(settings_);
}

const look::Frei0rParameter* LensInstance::Find(int index) const {
  const bool exists = index >= 0 && index < static_cast<int>(lens_.parameters.size());
  return exists ? &lens_.parameters[static_cast<std::size_t>(index)] : nullptr;
}

void LensInstance::Set(int index, const void* value) {
  const look::Frei0rParameter* parameter = Find(index);
  if (parameter == nullptr || value == nullptr) return;
  const look::Control& control = lens_.panel.controls[parameter->control];
  switch (parameter->kind) {
    case look::Frei0rKind::kSwitch:
      settings_.SetValue(control, ReadDouble(value) >= 0.5);
      break;
    case look::Frei0rKind::kNumber:
      look::SetFrei0rNumber(*parameter, ReadDouble(value), settings_);
      break;
    case look::Frei0rKind::kColour:
      settings_.SetValue(control, ReadColour(value));
      break;
  }
}

void LensInstance::Get(int index, void* value) const {
  const look::Frei0rParameter* parameter = Find(index);
  if (parameter == nullptr || value == nullptr) return;
  const look::Value& held = settings_.ValueOf(lens_.panel.controls[parameter->control]);
  if (parameter->kind == look::Frei0rKind::kColour) {
    const Colour colour = ShowColour(std::get<look::ColourValue>(held));
    std::memcpy(value, &colour, sizeof(colour));
    return;
  }
  const double number = parameter->kind == look::Frei0rKind::kSwitch
                            ? (std::get<bool>(held) ? 1.0 : 0.0)
                            : look::Frei0rNumberOf(*parameter, settings_);
  std::memcpy(value, &number, sizeof(number));
}

void LensInstance::Render(const std::uint32_t* frame, const std::uint32_t* layer,
                          std::uint32_t* result) noexcept {
  try {
    RenderWorlds(frame, layer, result);
  } catch (const std::exception& error) {
    HandOn(frame, result, error.what());
  } catch (...) {
    HandOn(frame, result, "an unexpected error");
  }
}

void LensInstance::RenderWorlds(const std::uint32_t* frame, const std::uint32_t* layer,
                                std::uint32_t* result) {
  FillWorld(frame, input_);
  const bool withLayer = layer != nullptr && layer_ != nullptr;
  if (withLayer) FillWorld(layer, *layer_);
  settings_.Apply(host_, input_.Width(), input_.Height());
  const headless::RenderResult rendered =
      host_.Render(input_, output_, withLayer ? layer_.get() : nullptr, MakeOptions());
  if (rendered.Ok()) {
    ShowWorld(output_, result);
  } else {
    HandOn(frame, result, rendered.description.c_str());
  }
}

void LensInstance::HandOn(const std::uint32_t* frame, std::uint32_t* result,
                          const char* why) noexcept {
  const std::size_t pixels =
      static_cast<std::size_t>(input_.Width()) * static_cast<std::size_t>(input_.Height());
  if (frame != result) std::memmove(result, frame, pixels * sizeof(*frame));
  if (told_) return;
  told_ = true;
  std::fprintf(stderr, "vitrell: a frame of %d x %d stays as it was: %s\n", input_.Width(),
               input_.Height(), why);
}

}  // namespace vitrell::frei0r
