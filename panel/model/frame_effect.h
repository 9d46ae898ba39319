// One frame through the effect, in its own size or smaller.
#ifndef VITRELL_PANEL_MODEL_FRAME_EFFECT_H_
#define VITRELL_PANEL_MODEL_FRAME_EFFECT_H_

#include <QSize>
#include <QString>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "headless/effect_host.h"
#include "look/settings.h"
#include "panel/model/smaller_frames.h"
#include "panel/model/source.h"

namespace vitrell::panel {

struct EffectOrder {
  std::shared_ptr<const SourceFrame> frame;
  look::Settings settings;  // standing still
  int divisor = 1;          // of width and height; lengths in pixels are divided, too
  // Once it is true, the effect's abort tells it to stop. May be null.
  std::atomic<bool>* cancel = nullptr;
  // Afterwards `cancel`, which then is needed, becomes true.
  std::optional<std::chrono::steady_clock::time_point> latest = {};
};

struct EffectOutcome {
  std::shared_ptr<const headless::WorldBuffer> world;  // null after a failure
  bool stopped = false;
  QSize layerSize;  // of the layer's picture in its file; empty without one
  QString message;  // as in RenderAnswer
};

// Has a host of its own. Used by one thread at a time.
class FrameEffect {
 public:
  // Throws headless::HostError if the effect cannot be set up.
  explicit FrameEffect(std::shared_ptr<const headless::EffectModule> module,
                       std::shared_ptr<SmallerFrames> smaller = std::make_shared<SmallerFrames>());

  EffectOutcome Render(const EffectOrder& order);
  // The lens alone, white on black; without a world also where this effect has no controls to show
  // it.
  EffectOutcome RenderMask(const EffectOrder& order);

 private:
  struct Layer {
    std::filesystem::path file;
    std::filesystem::file_time_type time;
    std::shared_ptr<const SourceFrame> frame;
    std::map<std::pair<int, bool>, headless::WorldBuffer> worlds;  // by divisor and depth
  };

  std::shared_ptr<const headless::WorldBuffer> InputOf(const EffectOrder& order);
  // Null where the settings name none. Throws media::Failure.
  const headless::WorldBuffer* LayerFor(const EffectOrder& order);
  Layer& ReadLayer(const std::filesystem::path& file);
  EffectOutcome RenderWorld(const headless::WorldBuffer& input, const EffectOrder& order);

  headless::EffectHost host_;
  std::shared_ptr<SmallerFrames> smaller_;
  std::optional<Layer> layer_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_FRAME_EFFECT_H_
