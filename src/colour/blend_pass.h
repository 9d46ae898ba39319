// The pass of the final blend: picks the callback for a render's mode and worlds.
#ifndef VITRELL_COLOUR_BLEND_PASS_H_
#define VITRELL_COLOUR_BLEND_PASS_H_

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/buffer.h"
#include "colour/blend_modes.h"
#include "host/host_api.h"
#include "host/pixel_pass.h"
#include "host/suite_handler.h"

namespace vitrell {

// One final blend: Prepare(), then Run(). During Run() any number of threads only read it.
class BlendPass {
 public:
  // The result for each pair of 8-bit channels under a mask of 1, at index 256 x back + front.
  using PairTable = std::array<std::uint8_t, 65536>;

  explicit BlendPass(const BlendRefcon& blend) : masked_{blend, LensMaskView(*blend.io->dst)} {}

  // Returns PF_Err_OUT_OF_MEMORY if the table cannot be allocated.
  [[nodiscard]] PF_Err Prepare();

  // Blends io->src over the input layer into io->dst, with progress up to the height of io->src,
  // and returns the host's code.
  [[nodiscard]] PF_Err Run(AEGP_SuiteHandler& suites);

 private:
  bool FitsLanes(const PF_LayerDef& dst) const;
  template <int kMode>
  [[nodiscard]] PF_Err UseLanes(const PF_LayerDef& dst);
  template <int kMode, typename Pixel>
  static PF_Err BlendByLanes(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out);
  template <int kMode, typename Pixel>
  static PF_Err BlendEverywhere(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out);
  template <int kMode, typename Pixel>
  void BlendWhole(const Pixel& front, const Pixel& back, Pixel* out) const;

  MaskedBlend masked_;
  PixelCallbacks callbacks_ = {};
  void* refcon_ = nullptr;  // What callbacks_ expect: this object, or masked_.
  MaskOnes ones_;
  const char* background_ = nullptr;
  std::ptrdiff_t rowBytes_ = 0;
  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
  Buffer<PairTable> pairs_;  // One table, allocated for 8-bit Screen only.
};

}  // namespace vitrell

#endif  // VITRELL_COLOUR_BLEND_PASS_H_
