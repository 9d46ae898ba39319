// Worlds, the host's image buffers: created, copied, filled and disposed of through its callbacks.
#include "host/world.h"

#include <cstdint>
#include <cstdlib>

namespace vitrell {

bool HoldsPixels(const PF_LayerDef& world, bool deep) {
  if (world.data == nullptr || world.width <= 0 || world.height <= 0) {
    return true;
  }
  const auto pixelBytes = static_cast<std::int64_t>(deep ? sizeof(PF_Pixel16) : sizeof(PF_Pixel));
  const std::uintptr_t alignment = deep ? alignof(PF_Pixel16) : alignof(PF_Pixel);
  const std::int64_t rowBytes = world.rowbytes;
  return std::abs(rowBytes) >= world.width * pixelBytes &&
         reinterpret_cast<std::uintptr_t>(world.data) % alignment == 0 &&
         rowBytes % static_cast<std::int64_t>(alignment) == 0;
}

A_long ExtentLines(const PF_LayerDef& world) {
  A_long lines = 0;  // Wraps on overflow.
  static_cast<void>(
      __builtin_sub_overflow(world.extent_hint.bottom, world.extent_hint.top, &lines));
  return lines;
}

PF_Err CopyWorld(const PF_InData* inData, PF_LayerDef* src, PF_LayerDef* dst) {
  return inData->utils->copy(inData->effect_ref, src, dst, nullptr, nullptr);
}

PF_Err FillTransparent(const PF_InData* inData, PF_LayerDef* world) {
  const PF_LRect rect = world->extent_hint;
  const PF_UtilCallbacks& utils = *inData->utils;
  if (IsDeep(*world) ? utils.fill16 == nullptr : utils.fill == nullptr) {
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  if (IsDeep(*world)) {
    const PF_Pixel16 transparent = {};
    return utils.fill16(inData->effect_ref, &transparent, &rect, world);
  }
  const PF_Pixel transparent = {};
  return utils.fill(inData->effect_ref, &transparent, &rect, world);
}

PF_Err OwnedWorld::Create(A_long width, A_long height, PF_NewWorldFlags flags) {
  Dispose();
  const PF_Err err = inData_->utils->new_world(inData_->effect_ref, width, height, flags, &world_);
  if (err != 0) {
    world_ = {};
    return err;
  }
  if (!HoldsPixels(world_, IsDeep(world_))) {
    Dispose();
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  return PF_Err_NONE;
}

PF_Err OwnedWorld::CreateLike(const PF_LayerDef& source) {
  // Kept: world flags and creation flags are two enumerations. A deep source's flag asks for a
  // cleared 8-bit world, so that a deep source usually takes the second attempt.
  if (const PF_Err err = Create(source.width, source.height, source.world_flags); err != 0) {
    return err;
  }
  if (IsDeep(world_) == IsDeep(source)) {
    return PF_Err_NONE;
  }
  const PF_NewWorldFlags depthFlag =
      IsDeep(source) ? PF_NewWorldFlag_DEEP_PIXELS : PF_NewWorldFlag_NONE;
  if (Create(source.width, source.height, depthFlag) != 0) {
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  if (IsDeep(world_) != IsDeep(source)) {
    Dispose();
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  return PF_Err_NONE;
}

void OwnedWorld::Dispose() {
  if (HasData()) {
    // A failed disposal is ignored: there is nothing else to do with the world.
    static_cast<void>(inData_->utils->dispose_world(inData_->effect_ref, &world_));
  }
  world_ = {};
}

}  // namespace vitrell
