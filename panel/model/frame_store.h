// The frames that were read and rendered last, within a budget.
#ifndef VITRELL_PANEL_MODEL_FRAME_STORE_H_
#define VITRELL_PANEL_MODEL_FRAME_STORE_H_

#include <QCache>
#include <QImage>
#include <QString>
#include <cstdint>
#include <memory>
#include <mutex>

#include "panel/model/renderer.h"

namespace vitrell::panel {

// Of one source: reading from another one empties it. One thread reads and finds; any thread keeps.
class FrameStore {
 public:
  FrameStore() { SetBudget(kUsualCacheBytes); }

  // The same text for the same result of a source, and only for that: a layer's file that was
  // written anew has another one.
  static QString KeyOf(const RenderRequest& request);

  // Bytes of exact frames that are kept; kUsualCacheBytes at first.
  void SetBudget(std::int64_t bytes);

  // Adds the frame that the request is for, and as it is shown. True if it is another one than
  // before. Throws media::Failure.
  bool Read(const RenderRequest& request, RenderAnswer& answer);

  // Exact frames of clips, without the lens alone. Makes the answer whole; false if it is not
  // there.
  bool Find(const RenderRequest& request, const QString& key, RenderAnswer& answer);
  void Keep(const RenderRequest& request, const QString& key, const RenderAnswer& answer);

 private:
  std::shared_ptr<const SourceFrame> frame_;
  QImage before_;

  std::mutex mutex_;
  std::shared_ptr<Source> source_;      // with the lock, like all that follows
  QCache<QString, RenderAnswer> kept_;  // costs are KiB
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_FRAME_STORE_H_
