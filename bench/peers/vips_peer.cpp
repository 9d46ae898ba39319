// libvips: a box blur with integer sums, once and three times in succession.
#include <vips/vips.h>

#include <array>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

#include "bench/peers/peer.h"

namespace vitrell::peers {
namespace {

constexpr int kTaps = 41;

struct Unref {
  void operator()(VipsImage* image) const { g_object_unref(image); }
};
using Image = std::unique_ptr<VipsImage, Unref>;

Image Checked(VipsImage* image) {
  if (image == nullptr) throw std::runtime_error(vips_error_buffer());
  return Image(image);
}

Picture8 Blur(const Picture8& input, VipsImage* ones, int rounds) {
  Image image = Checked(vips_image_new_from_memory(
      input.rgba.data(), input.rgba.size(), input.width, input.height, 4, VIPS_FORMAT_UCHAR));
  for (int round = 0; round < rounds; ++round) {
    VipsImage* next = nullptr;
    vips_convsep(image.get(), &next, ones, "precision", VIPS_PRECISION_INTEGER, nullptr);
    image = Checked(next);
  }
  std::size_t size = 0;
  const std::unique_ptr<void, decltype(&g_free)> pixels(
      vips_image_write_to_memory(image.get(), &size), &g_free);
  if (pixels == nullptr) throw std::runtime_error(vips_error_buffer());
  Picture8 output{input.width, input.height, std::vector<std::uint8_t>(size)};
  std::memcpy(output.rgba.data(), pixels.get(), size);
  return output;
}

void Measure(const Peer& peer) {
  std::array<double, kTaps> weights{};
  weights.fill(1);
  const Image ones = Checked(vips_image_new_matrix_from_array(kTaps, 1, weights.data(), kTaps));
  vips_image_set_double(ones.get(), "scale", kTaps);
  Picture8 output;
  for (const int rounds : {1, 3}) {
    peer.Measure(
        rounds == 1 ? "box/r20" : "box3/r20",
        [&] { output = Blur(peer.Input(), ones.get(), rounds); }, [&] { return output; });
  }
}

}  // namespace
}  // namespace vitrell::peers

int main(int argc, char** argv) {
  if (VIPS_INIT(argv[0]) != 0) return 1;
  vips_concurrency_set(1);
  vips_cache_set_max(0);
  const int exitCode = vitrell::peers::RunPeer("vips", argc, argv, &vitrell::peers::Measure);
  vips_shutdown();
  return exitCode;
}
