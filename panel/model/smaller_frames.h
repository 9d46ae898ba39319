// The smaller copies of the frame that is looked at.
#ifndef VITRELL_PANEL_MODEL_SMALLER_FRAMES_H_
#define VITRELL_PANEL_MODEL_SMALLER_FRAMES_H_

#include <QSize>
#include <map>
#include <memory>
#include <mutex>

#include "headless/world_buffer.h"
#include "panel/model/source.h"

namespace vitrell::panel {

// Keeps those of one frame: another frame's copies take their place. Used by several threads.
class SmallerFrames {
 public:
  // Width and height divided by this, at least 2. A copy that does not exist yet is made by the
  // caller's thread, which others do not wait for.
  std::shared_ptr<const headless::WorldBuffer> Of(const std::shared_ptr<const SourceFrame>& frame,
                                                  int divisor);

 private:
  std::mutex mutex_;
  std::shared_ptr<const SourceFrame> frame_;
  std::map<int, std::shared_ptr<const headless::WorldBuffer>> copies_;  // by divisor
};

// By which a frame's width and height are divided, never to nothing.
QSize DividedSize(int width, int height, int divisor);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_SMALLER_FRAMES_H_
