// The box lines with 64-bit sums, for radii beyond the range of every slider.
#include "base/depth_traits.h"
#include "blur/fast/box_lines.h"

namespace vitrell {
namespace {

template <typename Pixel>
void SlideWide(const Pixel* entering, const Pixel* leaving, std::int32_t count, WideSums* window,
               WideSums* sums) {
  for (std::int32_t i = 0; i < count; ++i) {
    *window = *window + ChannelSums<WideSums>(entering[i]) - ChannelSums<WideSums>(leaving[i]);
    sums[i] = *window;
  }
}

template <typename Pixel>
void AddWide(const Pixel* row, std::int32_t count, WideSums* sums) {
  for (std::int32_t i = 0; i < count; ++i) {
    sums[i] = sums[i] + ChannelSums<WideSums>(row[i]);
  }
}

template <typename Pixel>
void SubtractWide(const Pixel* row, std::int32_t count, WideSums* sums) {
  for (std::int32_t i = 0; i < count; ++i) {
    sums[i] = sums[i] - ChannelSums<WideSums>(row[i]);
  }
}

template <typename Pixel>
void WideMeans(const WideSums* sums, std::int32_t count, const BoxScale& scale, Pixel* out) {
  using Channel = ChannelOf<Pixel>;
  for (std::int32_t i = 0; i < count; ++i) {
    const auto mean = [&](int lane) {
      return static_cast<Channel>(WideMean(sums[i].lane[lane], scale.inverseTaps));
    };
    out[i] = {mean(0), mean(1), mean(2), mean(3)};
  }
}

template <typename Pixel>
void AdvanceWide(const Pixel* entering, const Pixel* leaving, std::int32_t count,
                 const BoxScale& scale, WideSums* sums, Pixel* out) {
  AddWide(entering, count, sums);
  SubtractWide(leaving, count, sums);
  WideMeans(sums, count, scale, out);
}

template <typename Pixel>
constexpr BoxEngine<Pixel, WideSums> kWideEngine = {
    SlideWide<Pixel>, AddWide<Pixel>, SubtractWide<Pixel>, WideMeans<Pixel>, AdvanceWide<Pixel>};

}  // namespace

template <>
const BoxEngine<PF_Pixel, WideSums>& WideBoxEngine<PF_Pixel>() {
  return kWideEngine<PF_Pixel>;
}

template <>
const BoxEngine<PF_Pixel16, WideSums>& WideBoxEngine<PF_Pixel16>() {
  return kWideEngine<PF_Pixel16>;
}

}  // namespace vitrell
