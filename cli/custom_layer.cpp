// Finding the layer's control, and what goes with it.
#include "cli/custom_layer.h"

#include "cli/failure.h"
#include "cli/interrupt.h"
#include "look/value_text.h"

namespace vitrell::cli {
namespace {

const look::Control* LayerControl(const look::Panel& panel) {
  for (const look::Control& control : panel.controls) {
    if (control.kind == look::ControlKind::kLayer) return &control;
  }
  return nullptr;
}

}  // namespace

std::string LayerPath(const look::Settings& settings) {
  const look::Control* control = LayerControl(settings.GetPanel());
  return control == nullptr ? "" : std::get<look::LayerValue>(settings.ValueOf(*control)).path;
}

void SetLayerPath(look::Settings& settings, const std::string& path) {
  const look::Control* control = LayerControl(settings.GetPanel());
  if (control != nullptr) settings.SetValue(*control, look::LayerValue{path});
}

void PrepareLayer(const std::string& customLayer, look::Settings& settings, Notes& notes) {
  const look::Control* layer = LayerControl(settings.GetPanel());
  if (!customLayer.empty()) {
    if (layer == nullptr) {
      throw Failure(kWrongUsage,
                    "--custom-layer: this effect takes no layer. Leave the option out.");
    }
    settings.SetValue(*layer, look::LayerValue{customLayer});
  }
  const look::Control* type = settings.GetPanel().Find(look::kLensType);
  if (layer == nullptr || type == nullptr) return;
  const std::string path = LayerPath(settings);
  const bool custom = look::FormatValue(*type, settings.ValueOf(*type)) == look::kCustomLens;
  if (custom && path.empty()) {
    notes.Advise(
        "lens.type is custom, but there is no custom layer, so the lens is empty. Give the "
        "layer with --custom-layer FILE.");
  }
  if (!custom && !path.empty()) {
    notes.Advise(path + ": the custom layer is not used. It shows with --set lens.type=custom.");
  }
}

media::Picture ReadLayer(const RenderArguments& arguments, const std::string& path) {
  media::ReadChoice choice;
  choice.autoOrient = !arguments.noAutoOrient;
  return media::ReadPicture(
      path, [](float) { return InterruptFlag().load(); }, {.maxPixels = arguments.maxPixels},
      choice);
}

}  // namespace vitrell::cli
