// The pass of the final blend: the callback that fits a render's mode and pictures.
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

// One final blend: prepared, then run. While it runs it is only read, by any number of threads.
class BlendPass {
 public:
  // Indexed by 256 x back + front: what becomes of each pair of 8-bit channels under a mask of 1.
  using PairTable = std::array<std::uint8_t, 65536>;

  explicit BlendPass(const BlendRefcon& blend) : blend_(blend) {}

  // Answers PF_Err_OUT_OF_MEMORY when a table is not to be had.
  [[nodiscard]] PF_Err Prepare();

  // Blends the refcon's io->src over its layer into io->dst, with progress up to the lines of
  // io->src, and answers the host's code.
  [[nodiscard]] PF_Err Run(AEGP_SuiteHandler& suites);

 private:
  bool FitsLanes(const PF_LayerDef& dst) const;
  template <int kMode>
  [[nodiscard]] PF_Err UseLanes(const PF_LayerDef& dst);
  template <int kMode, typename Pixel>
  static PF_Err BlendByLanes(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out);

  BlendRefcon blend_;
  PixelCallbacks callbacks_ = {};
  void* refcon_ = nullptr;  // What the callbacks expect: this object or blend_.
  MaskOnes ones_;
  const char* background_ = nullptr;
  std::ptrdiff_t rowBytes_ = 0;
  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
  Buffer<PairTable> pairs_;  // One table, in 8 bits.
};

}  // namespace vitrell

#endif  // VITRELL_COLOUR_BLEND_PASS_H_
