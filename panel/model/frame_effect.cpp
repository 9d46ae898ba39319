// Pictures, layers and settings in the size that is rendered.
#include "panel/model/frame_effect.h"

#include <algorithm>
#include <utility>

#include "media/exchange.h"
#include "panel/model/complaint_text.h"
#include "panel/model/layer_file.h"
#include "panel/model/mask_settings.h"
#include "panel/model/world_image.h"

namespace vitrell::panel {
namespace {

// A layer's picture has another size than the frame; only its depth has to be the same.
headless::WorldBuffer InDepth(const SourceFrame& layer, bool deep) {
  if (layer.world.Deep() == deep) return layer.world;
  return media::GiveToEffect(*layer.picture, deep).world;
}

// Every length belongs to the width of the frame.
look::Settings Divided(const look::Settings& settings, int width, int smallerWidth) {
  look::Settings divided = settings;
  for (const look::Control& control : settings.GetPanel().controls) {
    divided.SetMadeFor(control, width);
  }
  static_cast<void>(divided.FitTo(smallerWidth));
  return divided;
}

QString MessageOf(const headless::RenderResult& result) {
  if (!result.Ok()) {
    QString message = QString("The effect could not render this: %1.")
                          .arg(QString::fromStdString(result.description));
    if (!result.message.empty()) {
      message += QString(" It says: %1").arg(QString::fromStdString(result.message));
    }
    return message + (result.error == PF_Err_OUT_OF_MEMORY
                          ? " Use a smaller picture or smaller amounts."
                          : " Undo the last change, or reset the control.");
  }
  return ComplaintText(result.complaints);
}

}  // namespace

FrameEffect::FrameEffect(std::shared_ptr<const headless::EffectModule> module,
                         std::shared_ptr<SmallerFrames> smaller)
    : host_(std::move(module)), smaller_(std::move(smaller)) {}

std::shared_ptr<const headless::WorldBuffer> FrameEffect::InputOf(const EffectOrder& order) {
  if (order.divisor > 1) return smaller_->Of(order.frame, order.divisor);
  return {order.frame, &order.frame->world};
}

EffectOutcome FrameEffect::Render(const EffectOrder& order) {
  return RenderWorld(*InputOf(order), order);
}

EffectOutcome FrameEffect::RenderMask(const EffectOrder& order) {
  const std::optional<look::Settings> settings = MaskSettings(order.settings);
  if (!settings) return {};
  EffectOrder mask = order;
  for (const look::Control& control : settings->GetPanel().controls) {
    mask.settings.SetValue(control, settings->ValueOf(control));
  }
  return RenderWorld(BlackWorld(*InputOf(order)), mask);
}

EffectOutcome FrameEffect::RenderWorld(const headless::WorldBuffer& input,
                                       const EffectOrder& order) {
  EffectOutcome outcome;
  const headless::WorldBuffer* layer = nullptr;
  try {
    layer = LayerFor(order);
    if (layer != nullptr) outcome.layerSize = {layer_->frame->Width(), layer_->frame->Height()};
  } catch (const media::Failure& failure) {
    outcome.message = QString::fromStdString(failure.what());
    return outcome;
  }
  const look::Settings settings =
      order.divisor == 1 ? order.settings
                         : Divided(order.settings, order.frame->Width(), input.Width());
  settings.Apply(host_, input.Width(), input.Height());
  auto world = std::make_shared<headless::WorldBuffer>(
      input.Width(), input.Height(), input.Deep(),
      headless::WorldLayout{.fresh = headless::FreshPixels::kUnset});
  headless::RenderOptions options;
  options.threads = 0;
  options.cancel = order.cancel;
  if (order.latest) {
    options.progress = [&order](const headless::RenderProgress&) {
      if (std::chrono::steady_clock::now() > *order.latest) *order.cancel = true;
    };
  }
  // Looking for changed pixels costs a good part of a small render.
  options.verifyInputs = order.divisor == 1;
  const headless::RenderResult result = host_.Render(input, *world, layer, options);
  host_.ClearComplaints();
  // The effect does not pass every abort on.
  outcome.stopped = order.cancel != nullptr && *order.cancel;
  if (outcome.stopped) return outcome;
  outcome.message = MessageOf(result);
  if (result.Ok()) outcome.world = std::move(world);
  return outcome;
}

const headless::WorldBuffer* FrameEffect::LayerFor(const EffectOrder& order) {
  const std::filesystem::path file = LayerFile(order.settings, order.frame->number);
  if (file.empty()) return nullptr;
  const bool deep = order.frame->world.Deep();
  Layer& layer = ReadLayer(file);
  const auto found = layer.worlds.find({order.divisor, deep});
  if (found != layer.worlds.end()) return &found->second;
  headless::WorldBuffer world = InDepth(*layer.frame, deep);
  if (order.divisor > 1) {
    world = ScaledWorld(world, DividedSize(world.Width(), world.Height(), order.divisor));
  }
  return &layer.worlds.emplace(std::pair(order.divisor, deep), std::move(world)).first->second;
}

FrameEffect::Layer& FrameEffect::ReadLayer(const std::filesystem::path& file) {
  std::error_code ignored;
  const auto time = std::filesystem::last_write_time(file, ignored);
  if (!layer_ || layer_->file != file || layer_->time != time) {
    layer_ = {file, time, FrameOfPicture(file, 0), {}};
  }
  return *layer_;
}

}  // namespace vitrell::panel
