// Worlds, the host's image buffers: created, copied, filled and disposed of through its callbacks.
#ifndef VITRELL_HOST_WORLD_H_
#define VITRELL_HOST_WORLD_H_

#include "host/host_api.h"

namespace vitrell {

// True for 16-bit worlds.
inline bool IsDeep(const PF_LayerDef& world) {
  return (world.world_flags & PF_WorldFlag_DEEP) != 0;
}

// Whether every pixel of the world can be read at the given depth without leaving its row: the rows
// are long enough and, in 16 bits, pixels lie at even addresses. Row pitches may be negative. A
// world without pixels passes.
bool HoldsPixels(const PF_LayerDef& world, bool deep);

// Height of the world's extent hint, to which most passes count their progress.
A_long ExtentLines(const PF_LayerDef& world);

// Copies a whole world through the host. Source and destination may be the same world.
[[nodiscard]] PF_Err CopyWorld(const PF_InData* inData, PF_LayerDef* src, PF_LayerDef* dst);

// Fills the world's extent hint with transparent black, at the world's depth.
[[nodiscard]] PF_Err FillTransparent(const PF_InData* inData, PF_LayerDef* world);

// Owns one of the host's worlds and disposes of it in its destructor.
class OwnedWorld {
 public:
  explicit OwnedWorld(const PF_InData* inData) : inData_(inData) {}
  ~OwnedWorld() { Dispose(); }
  OwnedWorld(const OwnedWorld&) = delete;
  OwnedWorld& operator=(const OwnedWorld&) = delete;

  // Asks the host for a world. If the call fails, this object stays empty and the host's code is
  // returned; if the world's rows are too short for its pixels, it is disposed of and the result is
  // PF_Err_BAD_CALLBACK_PARAM.
  [[nodiscard]] PF_Err Create(A_long width, A_long height, PF_NewWorldFlags flags);

  // Asks for a world of the source's size that can hold a copy of it, passing the source's world
  // flags as creation flags. If the new world has another depth than the source, it is disposed of
  // and requested again with the creation flag of the right depth; if that fails too, the result is
  // PF_Err_BAD_CALLBACK_PARAM. Copies no pixels.
  [[nodiscard]] PF_Err CreateLike(const PF_LayerDef& source);

  void Dispose();

  bool HasData() const { return world_.data != nullptr; }
  PF_LayerDef* get() { return &world_; }

 private:
  const PF_InData* inData_;
  PF_LayerDef world_ = {};
};

}  // namespace vitrell

#endif  // VITRELL_HOST_WORLD_H_
