// The frames that were read and rendered last, within a budget.
#ifndef VITRELL_PANEL_MODEL_FRAME_STORE_H_
#define VITRELL_PANEL_MODEL_FRAME_STORE_H_

#include <QCache>
#include <QImage>
#include <QString>
#include <cstdint>
#include <memory>

#include "panel/model/renderer.h"

namespace vitrell::panel {

// Of one source: a request for another one empties it. Used by one thread.
class FrameStore {
 public:
  struct Rendered {
    std::shared_ptr<const headless::WorldBuffer> world;
    QImage image;
  };

  // Bytes of Rendered that are kept.
  void SetBudget(std::int64_t bytes);

  // The frame that the request is for. Throws media::Failure.
  std::shared_ptr<const SourceFrame> Read(const RenderRequest& request);
  // The frame that was read last, as it is shown.
  const QImage& Before() const { return before_; }

  // Exact frames of clips: null if it is not there.
  const Rendered* Find(const RenderRequest& request) const;
  void Keep(const RenderRequest& request, const Rendered& rendered);

  // Whether the small frame that was shown last is what the request asks for.
  bool IsPreviewed(const RenderRequest& request) const;
  void NotePreview(const RenderRequest& request);

 private:
  std::shared_ptr<Source> source_;
  std::shared_ptr<const SourceFrame> frame_;
  QImage before_;
  QString previewed_;
  QCache<QString, Rendered> kept_;  // costs are KiB
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_FRAME_STORE_H_
