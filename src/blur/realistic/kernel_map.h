// The realistic blur by map: the kernel of each pixel, and the sums over it.
#ifndef VITRELL_BLUR_REALISTIC_KERNEL_MAP_H_
#define VITRELL_BLUR_REALISTIC_KERNEL_MAP_H_

#include <cstdint>
#include <memory>

#include "base/buffer.h"
#include "base/render_records.h"
#include "blur/realistic/highlight_map.h"
#include "blur/realistic/iris_kernel.h"
#include "blur/realistic/lane_sums.h"
#include "host/host_api.h"

namespace vitrell {

// The settings and tables of one pass.
struct IrisBlurRefcon {
  const IrisKernel* kernels;               // Indexed by radius, 0 to maxRadius; empty if unused.
  std::uint8_t realisticUseLensAsBlurMap;  // Not 0 when the blur is by map.
  const IO_Params* io;
  const HighlightMap* highlightMap;
  std::int32_t maxRadius;
};

// Read-only once built; safe on any number of threads. Positions are those of the output's pixels.
class KernelMap {
 public:
  explicit KernelMap(const IrisEngine& engine) : engine_(engine) {}
  KernelMap(const KernelMap&) = delete;
  KernelMap& operator=(const KernelMap&) = delete;

  // Chooses each pixel's kernel by the lens mask: radius 0 where it is 0, maxRadius (at most
  // kMaxIrisRadius) where it is 1 or more. False if memory is short.
  [[nodiscard]] bool Build(const IO_Params& io, const IrisShape& shape, std::int32_t maxRadius);

  std::int64_t width() const { return width_; }
  std::int64_t height() const { return height_; }

  // The size of the blocks that SumRows computes: at most kMaxLaneRows rows and kMaxLanes lanes.
  int blockRows() const { return engine_.rowCount; }
  int blockLanes() const { return engine_.rowLanes; }

  // Computes the sums of the block whose upper left pixel is (x, y), which must lie within the
  // output; sums of pixels beyond the output are undefined. sums holds blockRows() rows.
  void SumRows(std::int64_t x, std::int64_t y, LaneSums* sums) const;

 private:
  [[nodiscard]] bool ChooseKernels(Buffer<std::uint8_t>* used);
  [[nodiscard]] bool BuildKernels(const IrisShape& shape, const Buffer<std::uint8_t>& used);
  int GroupLanes(std::int64_t x, std::int64_t y, LaneGroup* groups) const;

  const IrisEngine& engine_;
  IrisBlurRefcon refcon_ = {};  // Only Build reads its io.
  HighlightMap map_;
  std::unique_ptr<IrisKernel[]> kernels_;
  Buffer<std::uint16_t> kernelIndex_;  // One per output pixel, row-major.
  std::int64_t width_ = 0;             // Width of the output.
  std::int64_t height_ = 0;
  std::int64_t left_ = 0;  // Origin of the input.
  std::int64_t top_ = 0;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_KERNEL_MAP_H_
