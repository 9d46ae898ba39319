// What differs between the two pixel depths.
#ifndef VITRELL_BASE_DEPTH_TRAITS_H_
#define VITRELL_BASE_DEPTH_TRAITS_H_

#include <cstdint>

#include "host/host_api.h"

namespace vitrell {

// Kernels are templates over the pixel type. The primary template is undefined: only the host's two
// pixel types are valid.
template <typename Pixel>
struct DepthTraits;

template <>
struct DepthTraits<PF_Pixel> {
  using Channel = std::uint8_t;
  static constexpr std::int32_t kWhite = PF_MAX_CHAN8;
};

template <>
struct DepthTraits<PF_Pixel16> {
  using Channel = std::uint16_t;
  static constexpr std::int32_t kWhite = PF_MAX_CHAN16;
};

template <typename Pixel>
using ChannelOf = typename DepthTraits<Pixel>::Channel;

}  // namespace vitrell

#endif  // VITRELL_BASE_DEPTH_TRAITS_H_
