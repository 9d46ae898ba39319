// Worlds: the host's pictures, made, copied, filled and disposed of through its callbacks.
#include "host/world.h"

#include <cstdint>

namespace vitrell {

A_long ExtentLines(const PF_LayerDef& world) {
  return static_cast<A_long>(static_cast<std::uint32_t>(world.extent_hint.bottom) -
                             static_cast<std::uint32_t>(world.extent_hint.top));
}

PF_Err CopyWorld(const PF_InData* inData, PF_LayerDef* src, PF_LayerDef* dst) {
  return inData->utils->copy(inData->effect_ref, src, dst, nullptr, nullptr);
}

PF_Err FillTransparent(const PF_InData* inData, PF_LayerDef* world) {
  const PF_LRect rect = world->extent_hint;
  if (IsDeep(*world)) {
    const PF_Pixel16 transparent = {};
    return inData->utils->fill16(inData->effect_ref, &transparent, &rect, world);
  }
  const PF_Pixel transparent = {};
  return inData->utils->fill(inData->effect_ref, &transparent, &rect, world);
}

PF_Err OwnedWorld::Create(A_long width, A_long height, PF_NewWorldFlags flags) {
  Dispose();
  const PF_Err err = inData_->utils->new_world(inData_->effect_ref, width, height, flags, &world_);
  if (err != 0) {
    world_ = {};
  }
  return err;
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
    // Nothing can be done about a world that the host will not take back.
    static_cast<void>(inData_->utils->dispose_world(inData_->effect_ref, &world_));
  }
  world_ = {};
}

}  // namespace vitrell
