// Renders aside, so that the window never waits.
#ifndef VITRELL_PANEL_MODEL_RENDERER_H_
#define VITRELL_PANEL_MODEL_RENDERER_H_

#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>
#include <QTimer>
#include <cstdint>
#include <memory>

#include "headless/effect_module.h"
#include "headless/world_buffer.h"
#include "look/settings.h"
#include "panel/edit_phase.h"
#include "panel/model/source.h"

namespace vitrell::panel {

constexpr std::int64_t kUsualCacheBytes = std::int64_t{512} << 20;

struct RenderRequest {
  std::shared_ptr<Source> source;
  std::int64_t index = 0;   // of the frame, from 0
  look::Settings settings;  // standing still; the panel must outlive the renderer
  // While dragging a smaller frame comes first, and the exact one once the hand rests.
  EditPhase phase = EditPhase::kDone;
  bool wantMask = false;  // the lens alone, too
};

struct RenderAnswer {
  std::uint64_t request = 0;                 // what Request returned
  std::shared_ptr<const SourceFrame> frame;  // null if it could not be read
  QImage before;                             // the frame itself, like `image`
  QImage image;                              // with the effect; null after a failure
  QImage mask;                               // white inside the lens; null unless asked for
  bool exact = false;                        // every pixel is the one that a file would get
  double scale = 1;                          // of `image` to the frame
  QSize layerSize;  // of the layer's picture in its file; empty without one
  // The exact result as it left the effect; otherwise null.
  std::shared_ptr<const headless::WorldBuffer> world;
  // Code and meaning of a failure and what to do, or what the effect did wrong; empty: all well.
  QString message;
  double seconds = 0;  // of reading and rendering, without waiting
};

class RenderWorker;

// The newest request wins: one that waits is forgotten, and a running one is cancelled through the
// effect's abort. Only what is expected to be quick may go on for a moment, because otherwise a
// steady hand would never see anything.
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
  // Bytes of exact frames of clips that are kept; 0 keeps none. kUsualCacheBytes at first.
  void SetCacheBudget(std::int64_t bytes);

 Q_SIGNALS:
  // In the thread of this object, in the order of rendering. Smaller frames may still answer older
  // requests than the newest.
  void Answered(const vitrell::panel::RenderAnswer& answer);

 protected:
  bool event(QEvent* event) override;

 private:
  std::unique_ptr<RenderWorker> worker_;
  QTimer patience_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_RENDERER_H_
