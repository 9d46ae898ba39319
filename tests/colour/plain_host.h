// A host just large enough to run one per-pixel stage: maths, iterate suites and worlds.
#ifndef VITRELL_TESTS_COLOUR_PLAIN_HOST_H_
#define VITRELL_TESTS_COLOUR_PLAIN_HOST_H_

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "base/render_records.h"
#include "host/host_api.h"
#include "lens/lens_mask.h"

namespace vitrell {

// A world with its own memory, its rows padded, the padding filled with a byte that is checked.
template <typename Pixel>
class TestWorld {
 public:
  TestWorld(A_long width, A_long height, A_long paddingBytes = 0);

  PF_LayerDef* get() { return &world_; }
  Pixel& At(A_long x, A_long y) {
    return *reinterpret_cast<Pixel*>(memory_.data() + std::ptrdiff_t{y} * world_.rowbytes +
                                     std::ptrdiff_t{x} * kPixelBytes);
  }
  // Fills all channels of all pixels from the generator.
  void Randomize(std::mt19937& random);
  // True while no byte of the padding has been written.
  bool IsPaddingIntact() const;

 private:
  static constexpr auto kPixelBytes = static_cast<A_long>(sizeof(Pixel));
  static constexpr char kPaddingByte = 0x5A;

  std::vector<char> memory_;
  PF_LayerDef world_ = {};
};

// The arguments of the last iterate call.
struct IterateCall {
  int count = 0;
  bool isDeep = false;
  A_long progressBase = -1;
  A_long progressFinal = -1;
  const PF_LayerDef* src = nullptr;
  const PF_LayerDef* dst = nullptr;
  const PF_LRect* area = nullptr;
};

// What a host is told to do and has seen.
struct PlainHostState {
  IterateCall lastCall;
  int suitesHeld = 0;
  PF_Err iterateResult = PF_Err_NONE;
  bool isShuffled = false;
  unsigned seed = 0;
};

// One at a time: the callbacks have no other way to their host than process-wide data.
class PlainHost {
 public:
  PlainHost();
  ~PlainHost();
  PlainHost(const PlainHost&) = delete;
  PlainHost& operator=(const PlainHost&) = delete;

  PF_InData* inData() { return &inData_; }
  const IterateCall& lastCall() const { return state_.lastCall; }
  int suitesHeld() const { return state_.suitesHeld; }
  // What iterate answers, after visiting every pixel.
  void SetIterateResult(PF_Err result) { state_.iterateResult = result; }
  // Visits the pixels in an order drawn from the seed instead of row by row.
  void ShuffleOrder(unsigned seed) {
    state_.isShuffled = true;
    state_.seed = seed;
  }

 private:
  PlainHostState state_;
  PF_UtilCallbacks utils_ = {};
  SPBasicSuite basic_ = {};
  PF_InData inData_ = {};
};

// A lens mask for one test, of the rectangle (0, 0, width, height); on request told in rows as
// well, which is what a render builds and the quick way of a stage reads.
class TestMask {
 public:
  TestMask(A_long width, A_long height, double value, bool inRows = false);
  ~TestMask();
  TestMask(const TestMask&) = delete;
  TestMask& operator=(const TestMask&) = delete;

  double& At(A_long x, A_long y) {
    return values_[static_cast<std::size_t>(y) * width_ + static_cast<std::size_t>(x)];
  }

 private:
  std::size_t width_;
  std::vector<double> values_;
  std::vector<MaskRow> rows_;
};

}  // namespace vitrell

#endif  // VITRELL_TESTS_COLOUR_PLAIN_HOST_H_
