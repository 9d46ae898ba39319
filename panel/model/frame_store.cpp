// Keys, costs and forgetting.
#include "panel/model/frame_store.h"

#include <filesystem>
#include <string>
#include <system_error>

#include "look/value_text.h"
#include "media/failure.h"
#include "panel/model/layer_file.h"
#include "panel/model/world_image.h"

namespace vitrell::panel {
namespace {

namespace fs = std::filesystem;

constexpr qsizetype kCostUnit = 1024;  // bytes

// Of the layer's file, if there is one; differs once it is written anew.
std::string LayerState(const RenderRequest& request) {
  fs::path file;
  try {
    file = LayerFile(request.settings, request.source->NumberOf(request.index));
  } catch (const media::Failure&) {
    // Rendering tells it.
  }
  if (file.empty()) return {};
  std::error_code ignored;
  const fs::file_time_type time = fs::last_write_time(file, ignored);
  return std::to_string(time.time_since_epoch().count()) + ' ' +
         std::to_string(fs::file_size(file, ignored));
}

qsizetype CostOf(const headless::WorldBuffer& world) {
  const qsizetype pixels = static_cast<qsizetype>(world.Width()) * world.Height();
  return pixels * static_cast<qsizetype>(world.PixelBytes() + sizeof(QRgb)) / kCostUnit + 1;
}

}  // namespace

QString FrameStore::KeyOf(const RenderRequest& request) {
  std::string key = std::to_string(request.index);
  for (const look::Control& control : request.settings.GetPanel().controls) {
    key += '\n' + look::FormatValue(control, request.settings.ValueOf(control));
  }
  return QString::fromStdString(key + '\n' + LayerState(request));
}

void FrameStore::SetBudget(std::int64_t bytes) {
  const std::lock_guard lock(mutex_);
  kept_.setMaxCost(static_cast<qsizetype>(bytes) / kCostUnit);
}

bool FrameStore::Read(const RenderRequest& request, RenderAnswer& answer) {
  {
    const std::lock_guard lock(mutex_);
    if (source_ != request.source) kept_.clear();
    source_ = request.source;
  }
  answer.frame = request.source->Read(request.index);
  const bool isOther = frame_ != answer.frame;
  if (isOther) before_ = ImageOf(answer.frame->world);
  frame_ = answer.frame;
  answer.before = before_;
  return isOther;
}

bool FrameStore::Find(const RenderRequest& request, const QString& key, RenderAnswer& answer) {
  if (!request.source->IsClip()) return false;
  const std::lock_guard lock(mutex_);
  const RenderAnswer* const kept = kept_.object(key);
  if (kept == nullptr) return false;
  answer.exact = true;
  answer.world = kept->world;
  answer.image = kept->image;
  answer.layerSize = kept->layerSize;
  answer.message = kept->message;
  return true;
}

void FrameStore::Keep(const RenderRequest& request, const QString& key,
                      const RenderAnswer& answer) {
  if (!request.source->IsClip()) return;
  const std::lock_guard lock(mutex_);
  if (source_ != request.source) return;
  auto* const kept = new RenderAnswer;
  kept->world = answer.world;
  kept->image = answer.image;
  kept->layerSize = answer.layerSize;
  kept->message = answer.message;
  kept_.insert(key, kept, CostOf(*answer.world));
}

}  // namespace vitrell::panel
