// The effect applied to the frames of one size.
#ifndef VITRELL_FREI0R_LENS_INSTANCE_H_
#define VITRELL_FREI0R_LENS_INSTANCE_H_

#include <cstdint>
#include <memory>
#include <vector>

#include "headless/effect_host.h"
#include "headless/effect_module.h"
#include "headless/world_buffer.h"
#include "look/control.h"
#include "look/frei0r_mapping.h"
#include "look/settings.h"

namespace vitrell::frei0r {

// What all instances of one effect share.
struct Lens {
  // Throws HostError when the effect cannot be set up.
  explicit Lens(std::shared_ptr<const headless::EffectModule> effect);
  Lens(const Lens&) = delete;
  Lens& operator=(const Lens&) = delete;

  std::shared_ptr<const headless::EffectModule> module;
  look::Panel panel;
  std::vector<look::Frei0rParameter> parameters;
};

// Used by one thread at a time; instances run at once.
class LensInstance {
 public:
  // With `hasLayer` the frames come with a custom lens layer, and the lens shows it from the start.
  // The lens must outlive the instance. Throws HostError and std::bad_alloc.
  LensInstance(const Lens& lens, int width, int height, bool hasLayer);

  // The value has the form that the parameter's kind has in the interface. An index that there is
  // not and NaN change nothing.
  void Set(int index, const void* value);
  void Get(int index, void* value) const;

  // Renders the effect in 8 bits; `layer` is null without one. `result` may be `frame`. When the
  // effect fails, the result is the frame, and standard error tells the first time.
  void Render(const std::uint32_t* frame, const std::uint32_t* layer,
              std::uint32_t* result) noexcept;

 private:
  void RenderWorlds(const std::uint32_t* frame, const std::uint32_t* layer, std::uint32_t* result);
  void HandOn(const std::uint32_t* frame, std::uint32_t* result, const char* why) noexcept;
  const look::Frei0rParameter* Find(int index) const;

  const Lens& lens_;
  headless::EffectHost host_;
  look::Settings settings_;
  headless::WorldBuffer input_;
  headless::WorldBuffer output_;
  std::unique_ptr<headless::WorldBuffer> layer_;
  bool told_ = false;
};

}  // namespace vitrell::frei0r

#endif  // VITRELL_FREI0R_LENS_INSTANCE_H_
