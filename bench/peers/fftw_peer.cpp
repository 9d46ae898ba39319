// FFTW: convolution with a pentagon as a product of spectra, single precision, three channels.
#include <fftw3.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "bench/peers/peer.h"

namespace vitrell::peers {
namespace {

template <typename Value>
struct Free {
  void operator()(Value* values) const { fftwf_free(values); }
};

// The next even size without prime factors other than 2, 3 and 5.
int GoodSize(int atLeast) {
  for (int size = atLeast + atLeast % 2;; size += 2) {
    int rest = size;
    for (const int factor : {2, 3, 5}) {
      while (rest % factor == 0) rest /= factor;
    }
    if (rest == 1) return size;
  }
}

int Mirrored(int position, int size) {
  if (position < 0) position = -position;
  return position < size ? position : 2 * (size - 1) - position;
}

// Convolution by one kernel of the given radius with mirrored edges. Plans and the kernel's
// spectrum are computed in advance.
class Convolver {
 public:
  Convolver(int width, int height, int radiusPx)
      : width_(width),
        height_(height),
        radiusPx_(radiusPx),
        columns_(GoodSize(width + 2 * radiusPx)),
        rows_(GoodSize(height + 2 * radiusPx)),
        half_(columns_ / 2 + 1),
        plane_(fftwf_alloc_real(Count(columns_))),
        spectrum_(fftwf_alloc_complex(Count(half_))),
        kernel_(fftwf_alloc_complex(Count(half_))),
        forward_(
            fftwf_plan_dft_r2c_2d(rows_, columns_, plane_.get(), spectrum_.get(), FFTW_MEASURE)),
        backward_(
            fftwf_plan_dft_c2r_2d(rows_, columns_, spectrum_.get(), plane_.get(), FFTW_MEASURE)) {
    std::fill_n(plane_.get(), Count(columns_), 0.0F);
    const std::vector<float> weights = PentagonKernel(radiusPx);
    const int size = 2 * radiusPx + 1;
    // Rotated by 180 degrees, which the convolution undoes, with its centre at the origin.
    for (int i = 0; i < size * size; ++i) {
      const int y = (rows_ - (i / size - radiusPx)) % rows_;
      const int x = (columns_ - (i % size - radiusPx)) % columns_;
      plane_[At(x, y, columns_)] =
          weights[static_cast<std::size_t>(i)] / static_cast<float>(Count(columns_));
    }
    fftwf_execute_dft_r2c(forward_, plane_.get(), kernel_.get());
  }
  ~Convolver() {
    fftwf_destroy_plan(forward_);
    fftwf_destroy_plan(backward_);
  }
  Convolver(const Convolver&) = delete;
  Convolver& operator=(const Convolver&) = delete;

  void Run(const Picture8& input, Picture8* output) {
    for (std::size_t channel = 0; channel < 3; ++channel) {
      Load(input, channel);
      fftwf_execute(forward_);
      for (std::size_t i = 0; i < Count(half_); ++i) {
        const float* const k = kernel_[i];
        float* const s = spectrum_[i];
        const float real = s[0] * k[0] - s[1] * k[1];
        s[1] = s[0] * k[1] + s[1] * k[0];
        s[0] = real;
      }
      fftwf_execute(backward_);
      Store(channel, output);
    }
    for (std::size_t i = 3; i < input.rgba.size(); i += 4) output->rgba[i] = input.rgba[i];
  }

 private:
  static std::size_t At(int x, int y, int stride) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(stride) +
           static_cast<std::size_t>(x);
  }
  [[nodiscard]] std::size_t Count(int stride) const { return At(0, rows_, stride); }

  void Load(const Picture8& input, std::size_t channel) {
    for (int y = 0; y < rows_; ++y) {
      float* const row = plane_.get() + At(0, y, columns_);
      if (y >= height_ + 2 * radiusPx_) {
        std::fill_n(row, columns_, 0.0F);
        continue;
      }
      const int fromY = Mirrored(y - radiusPx_, height_);
      const int filled = width_ + 2 * radiusPx_;
      for (int x = 0; x < filled; ++x) {
        row[x] = input.rgba[input.At(Mirrored(x - radiusPx_, width_), fromY) + channel];
      }
      std::fill(row + filled, row + columns_, 0.0F);
    }
  }

  void Store(std::size_t channel, Picture8* output) const {
    for (int y = 0; y < height_; ++y) {
      const float* const row = plane_.get() + At(radiusPx_, y + radiusPx_, columns_);
      for (int x = 0; x < width_; ++x) {
        output->rgba[output->At(x, y) + channel] =
            static_cast<std::uint8_t>(std::clamp(row[x] + 0.5F, 0.0F, 255.0F));
      }
    }
  }

  int width_;
  int height_;
  int radiusPx_;
  int columns_;
  int rows_;
  int half_;
  std::unique_ptr<float[], Free<float>> plane_;
  std::unique_ptr<fftwf_complex[], Free<fftwf_complex>> spectrum_;
  std::unique_ptr<fftwf_complex[], Free<fftwf_complex>> kernel_;
  fftwf_plan forward_;
  fftwf_plan backward_;
};

void Measure(const Peer& peer) {
  for (const int radiusPx : {20, 50, 100}) {
    Convolver convolver(peer.Input().width, peer.Input().height, radiusPx);
    Picture8 output = peer.SameSize();
    peer.Measure(
        "pentagon/r" + std::to_string(radiusPx), [&] { convolver.Run(peer.Input(), &output); },
        [&] { return output; });
  }
}

}  // namespace
}  // namespace vitrell::peers

int main(int argc, char** argv) {
  return vitrell::peers::RunPeer("fftw", argc, argv, &vitrell::peers::Measure);
}
