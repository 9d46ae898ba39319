// Keys, costs and forgetting.
#include "panel/model/frame_store.h"

#include <string>

#include "look/value_text.h"
#include "panel/model/world_image.h"

namespace vitrell::panel {
namespace {

constexpr qsizetype kCostUnit = 1024;  // bytes

// The same text for the same picture of a source, and only for that.
QString KeyOf(const RenderRequest& request) {
  std::string key = std::to_string(request.index);
  for (const look::Control& control : request.settings.GetPanel().controls) {
    key += '\n' + look::FormatValue(control, request.settings.ValueOf(control));
  }
  return QString::fromStdString(key);
}

}  // namespace

void FrameStore::SetBudget(std::int64_t bytes) {
  kept_.setMaxCost(static_cast<qsizetype>(bytes) / kCostUnit);
}

std::shared_ptr<const SourceFrame> FrameStore::Read(const RenderRequest& request) {
  if (source_ != request.source) kept_.clear();
  source_ = request.source;
  std::shared_ptr<const SourceFrame> frame = source_->Read(request.index);
  if (frame_ != frame) {
    frame_ = frame;
    before_ = ImageOf(frame->world);
    previewed_.clear();
  }
  return frame;
}

const FrameStore::Rendered* FrameStore::Find(const RenderRequest& request) const {
  return request.source->IsClip() ? kept_.object(KeyOf(request)) : nullptr;
}

void FrameStore::Keep(const RenderRequest& request, const Rendered& rendered) {
  if (!request.source->IsClip()) return;
  const qsizetype pixels =
      static_cast<qsizetype>(rendered.world->Width()) * rendered.world->Height();
  const qsizetype bytes =
      pixels * static_cast<qsizetype>(rendered.world->PixelBytes() + sizeof(QRgb));
  kept_.insert(KeyOf(request), new Rendered(rendered), bytes / kCostUnit + 1);
}

bool FrameStore::IsPreviewed(const RenderRequest& request) const {
  return KeyOf(request) == previewed_;
}

void FrameStore::NotePreview(const RenderRequest& request) { previewed_ = KeyOf(request); }

}  // namespace vitrell::panel
