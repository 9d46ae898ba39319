// Renders aside, so that the window never waits.
#ifndef VITRELL_PANEL_MODEL_RENDERER_H_
#define VITRELL_PANEL_MODEL_RENDERER_H_

#include <QImage>
#include <QObject>
#include <QString>
#include <cstdint>
#include <memory>

#include "headless/effect_module.h"
#include "headless/world_buffer.h"
#include "look/settings.h"
#include "panel/edit_phase.h"
#include "panel/model/source.h"

namespace vitrell::panel {

struct RenderRequest {
  std::shared_ptr<const SourceFrame> frame;
  look::Settings settings;  // standing still
  // While dragging a smaller frame comes first, and the exact one once the hand rests.
  EditPhase phase = EditPhase::kDone;
  bool wantMask = false;  // the lens alone, too
};

struct RenderAnswer {
  std::uint64_t request = 0;  // what Request returned
  QImage image;               // premultiplied; null after a failure
  QImage mask;                // white inside the lens; null unless asked for
  bool exact = false;         // every pixel is the one that a file would get
  double scale = 1;           // of the rendered picture to the real one
  // The exact result as it left the effect; otherwise null.
  std::shared_ptr<const headless::WorldBuffer> world;
  // Code and meaning of a failure and what to do, or what the effect did wrong; empty: all well.
  QString message;
  double seconds = 0;  // of rendering, without waiting
};

// The newest request wins: one that waits is forgotten, and a running one is cancelled through the
// effect's abort. While dragging, a running small frame may end if that takes it no longer than
// kPatience, because otherwise a steady hand would never see any.
class Renderer : public QObject {
  Q_OBJECT

 public:
  explicit Renderer(std::shared_ptr<const headless::EffectModule> module,
                    QObject* parent = nullptr);
  // Cancels and waits for what runs.
  ~Renderer() override;
  Renderer(const Renderer&) = delete;
  Renderer& operator=(const Renderer&) = delete;

  // Never waits. The number of the request, counted from 1.
  std::uint64_t Request(RenderRequest request);
  // Forgets what waits and cancels what runs.
  void Cancel();
  // Bytes of exact frames of clips that are kept; 0 keeps none.
  void SetCacheBudget(std::int64_t bytes);

 Q_SIGNALS:
  // In the thread of this object, in the order of rendering. Older requests than the newest may
  // still be answered with smaller frames.
  void Answered(const vitrell::panel::RenderAnswer& answer);

 private:
  class Worker;
  std::unique_ptr<Worker> worker_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_RENDERER_H_
