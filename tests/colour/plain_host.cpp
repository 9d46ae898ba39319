// A host just large enough to run one per-pixel stage.
#include "colour/plain_host.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

namespace vitrell {
namespace {

// The living host's state, or null.
PlainHostState* g_state = nullptr;

double Sine(double x) { return std::sin(x); }
double Cosine(double x) { return std::cos(x); }
double Tangent(double x) { return std::tan(x); }
double SquareRoot(double x) { return std::sqrt(x); }
double Power(double x, double y) { return std::pow(x, y); }

template <typename Pixel>
Pixel* PixelAt(const PF_LayerDef* world, A_long x, A_long y) {
  return reinterpret_cast<Pixel*>(static_cast<char*>(world->data) +
                                  std::ptrdiff_t{y} * world->rowbytes) +
         x;
}

template <typename Pixel, typename Callback>
PF_Err Iterate(PF_InData* /*inData*/, A_long progressBase, A_long progressFinal, PF_LayerDef* src,
               const PF_LRect* area, void* refcon, Callback callback, PF_LayerDef* dst) {
  const bool isDeep = sizeof(Pixel) == sizeof(PF_Pixel16);
  g_state->lastCall = {
      g_state->lastCall.count + 1, isDeep, progressBase, progressFinal, src, dst, area};
  const A_long width = std::min(src->width, dst->width);
  const A_long height = std::min(src->height, dst->height);
  std::vector<A_long> order(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  std::iota(order.begin(), order.end(), 0);
  if (g_state->isShuffled) {
    std::shuffle(order.begin(), order.end(), std::mt19937(g_state->seed));
  }
  for (const A_long i : order) {
    const A_long x = i % width;
    const A_long y = i / width;
    if (const PF_Err err =
            callback(refcon, x, y, PixelAt<Pixel>(src, x, y), PixelAt<Pixel>(dst, x, y));
        err != 0) {
      return err;
    }
  }
  return g_state->iterateResult;
}

const PF_Iterate8Suite1 kIterate8 = {Iterate<PF_Pixel, PF_IteratePixel8Func>, nullptr, nullptr,
                                     nullptr, nullptr};
const PF_iterate16Suite1 kIterate16 = {Iterate<PF_Pixel16, PF_IteratePixel16Func>, nullptr,
                                       nullptr};

SPErr AcquireSuite(const char* name, std::int32_t version, const void** suite) {
  if (version != 1) {
    return kSPSuiteNotFoundError;
  }
  if (std::strcmp(name, "PF Iterate8 Suite") == 0) {
    *suite = &kIterate8;
  } else if (std::strcmp(name, "PF iterate16 Suite") == 0) {
    *suite = &kIterate16;
  } else {
    return kSPSuiteNotFoundError;
  }
  ++g_state->suitesHeld;
  return 0;
}

SPErr ReleaseSuite(const char* /*name*/, std::int32_t /*version*/) {
  --g_state->suitesHeld;
  return 0;
}

}  // namespace

template <typename Pixel>
TestWorld<Pixel>::TestWorld(A_long width, A_long height, A_long paddingBytes) {
  world_.rowbytes = width * kPixelBytes + paddingBytes;
  memory_.assign(static_cast<std::size_t>(world_.rowbytes) * static_cast<std::size_t>(height),
                 kPaddingByte);
  world_.data = memory_.data();
  world_.width = width;
  world_.height = height;
  world_.extent_hint = {0, 0, width, height};
  world_.world_flags =
      PF_WorldFlag_WRITEABLE | (sizeof(Pixel) == sizeof(PF_Pixel16) ? PF_WorldFlag_DEEP : 0);
}

template <typename Pixel>
void TestWorld<Pixel>::Randomize(std::mt19937& random) {
  for (A_long y = 0; y < world_.height; ++y) {
    for (A_long x = 0; x < world_.width; ++x) {
      const std::uint64_t bits = std::uint64_t{random()} << 32U | random();
      std::memcpy(&At(x, y), &bits, sizeof(Pixel));
    }
  }
}

template <typename Pixel>
bool TestWorld<Pixel>::IsPaddingIntact() const {
  for (A_long y = 0; y < world_.height; ++y) {
    const char* const row = memory_.data() + std::ptrdiff_t{y} * world_.rowbytes;
    if (!std::all_of(row + std::ptrdiff_t{world_.width} * kPixelBytes, row + world_.rowbytes,
                     [](char byte) { return byte == kPaddingByte; })) {
      return false;
    }
  }
  return true;
}

template class TestWorld<PF_Pixel>;
template class TestWorld<PF_Pixel16>;

PlainHost::PlainHost() {
  g_state = &state_;
  utils_.ansi.sin = Sine;
  utils_.ansi.cos = Cosine;
  utils_.ansi.tan = Tangent;
  utils_.ansi.sqrt = SquareRoot;
  utils_.ansi.pow = Power;
  basic_.AcquireSuite = AcquireSuite;
  basic_.ReleaseSuite = ReleaseSuite;
  inData_.utils = &utils_;
  inData_.pica_basicP = &basic_;
}

PlainHost::~PlainHost() { g_state = nullptr; }

TestMask::TestMask(A_long width, A_long height, double value, bool inRows)
    : width_(static_cast<std::size_t>(width)),
      values_(width_ * static_cast<std::size_t>(height), value) {
  g_LensMask = values_.data();
  g_LensMaskSize = values_.size();
  if (inRows) {
    for (A_long y = 0; y < height; ++y) {
      MaskRow row = {};
      row.values = &At(0, y);
      row.length = static_cast<std::uint32_t>(width);
      rows_.push_back(row);
    }
    g_LensMaskRows = {rows_.data(), static_cast<std::uint32_t>(width)};
  }
}

TestMask::~TestMask() {
  g_LensMask = nullptr;
  g_LensMaskSize = 0;
  g_LensMaskRows = {};
}

}  // namespace vitrell
