// A scripted host for direct tests of the effect's functions.
#include "host/fake_host.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <random>

namespace vitrell {
namespace {

FakeHost* g_host = nullptr;

char* RowOf(const PF_LayerDef* world, A_long y) {
  return static_cast<char*>(world->data) + y * world->rowbytes;
}

std::string Numbers(std::initializer_list<A_long> numbers) {
  std::string text;
  for (const A_long number : numbers) {
    if (!text.empty()) {
      text += ',';
    }
    text += std::to_string(number);
  }
  return text;
}

template <typename Pixel, typename Callback>
PF_Err Iterate(PF_InData* /*inData*/, A_long progressBase, A_long progressFinal, PF_LayerDef* src,
               const PF_LRect* area, void* refcon, Callback callback, PF_LayerDef* dst) {
  g_host->log.push_back((sizeof(Pixel) == 8 ? "iterate16 " : "iterate8 ") +
                        std::to_string(progressBase) + ".." + std::to_string(progressFinal));
  g_host->lastRefcon = refcon;
  g_host->lastSource = src;
  g_host->lastDestination = dst;
  g_host->lastAreaNull = area == nullptr;
  if (const PF_Err err = g_host->Answer("iterate"); err != 0) {
    return err;
  }
  const A_long width = std::min(src->width, dst->width);
  const A_long height = std::min(src->height, dst->height);
  std::vector<A_long> order(static_cast<std::size_t>(std::max(width, 0)) *
                            static_cast<std::size_t>(std::max(height, 0)));
  std::iota(order.begin(), order.end(), 0);
  if (g_host->shuffleSeed) {
    std::shuffle(order.begin(), order.end(), std::mt19937(*g_host->shuffleSeed));
  }
  for (const A_long i : order) {
    const A_long x = i % width;
    const A_long y = i / width;
    if (const PF_Err err = callback(refcon, x, y, reinterpret_cast<Pixel*>(RowOf(src, y)) + x,
                                    reinterpret_cast<Pixel*>(RowOf(dst, y)) + x);
        err != 0) {
      return err;
    }
  }
  return g_host->iterateResult;
}

const PF_Iterate8Suite1 kIterate8 = {Iterate<PF_Pixel, PF_IteratePixel8Func>, nullptr, nullptr,
                                     nullptr, nullptr};
const PF_iterate16Suite1 kIterate16 = {Iterate<PF_Pixel16, PF_IteratePixel16Func>, nullptr,
                                       nullptr};

PF_Err GetPixelFormat(const PF_LayerDef* world, PF_PixelFormat* format) {
  g_host->log.emplace_back("get_pixel_format");
  const bool deep = (world->world_flags & PF_WorldFlag_DEEP) != 0;
  *format = deep ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB32;
  return g_host->Answer("get_pixel_format");
}

const PF_WorldSuite2 kWorlds = {nullptr, nullptr, GetPixelFormat};
PF_ParamUtilsSuite3 MakeParamUtils() {
  PF_ParamUtilsSuite3 suite = {};
  suite.PF_UpdateParamUI = [](PF_ProgPtr, PF_ParamIndex, const PF_ParamDef*) -> PF_Err {
    return PF_Err_NONE;
  };
  return suite;
}

PF_ANSICallbacksSuite1 MakeAnsi() {
  PF_ANSICallbacksSuite1 suite = {};
  suite.sprintf = std::sprintf;
  return suite;
}

const PF_ParamUtilsSuite3 kParamUtils = MakeParamUtils();
const PF_ANSICallbacksSuite1 kAnsi = MakeAnsi();

SPErr AcquireSuite(const char* name, std::int32_t version, const void** suite) {
  const std::string text = std::string(name) + " " + std::to_string(version);
  g_host->log.push_back("acquire " + text);
  if (g_host->refusedSuites.count(name) != 0) {
    return kSPSuiteNotFoundError;
  }
  const std::map<std::string, const void*> suites = {{"PF Iterate8 Suite 1", &kIterate8},
                                                     {"PF iterate16 Suite 1", &kIterate16},
                                                     {"PF World Suite 2", &kWorlds},
                                                     {"PF Param Utils Suite 3", &kParamUtils},
                                                     {"PF ANSI Suite 1", &kAnsi}};
  const auto found = suites.find(text);
  if (found == suites.end()) {
    return kSPSuiteNotFoundError;
  }
  *suite = g_host->nullSuites.count(name) != 0 ? nullptr : found->second;
  return 0;
}

SPErr ReleaseSuite(const char* name, std::int32_t version) {
  g_host->log.push_back("release " + std::string(name) + " " + std::to_string(version));
  return 0;
}

PF_Err NewWorld(PF_ProgPtr /*effectRef*/, A_long width, A_long height, PF_NewWorldFlags flags,
                PF_LayerDef* world) {
  g_host->log.push_back("new_world " + std::to_string(width) + "x" + std::to_string(height) +
                        " flags " + std::to_string(flags));
  NewWorldAnswer answer = {.deep = (flags & PF_NewWorldFlag_DEEP_PIXELS) != 0};
  if (!g_host->newWorldAnswers.empty()) {
    answer = g_host->newWorldAnswers.front();
    g_host->newWorldAnswers.pop_front();
  }
  if (answer.error != 0) {
    std::memset(world, answer.junk ? 0xCD : 0, sizeof(*world));
    return answer.error;
  }
  *world = {};
  const A_long pixelBytes = answer.deep ? 8 : 4;
  world->world_flags = answer.deep ? PF_WorldFlag_DEEP : 0;
  world->rowbytes = width * pixelBytes + 16;
  const auto bytes = static_cast<std::size_t>(world->rowbytes * std::max(height, 1));
  world->data = std::malloc(bytes);
  std::memset(world->data, 0xA5, bytes);
  world->width = width;
  world->height = height;
  world->extent_hint = {0, 0, width, height};
  ++g_host->liveWorlds;
  return PF_Err_NONE;
}

PF_Err DisposeWorld(PF_ProgPtr /*effectRef*/, PF_LayerDef* world) {
  g_host->log.emplace_back("dispose");
  std::free(world->data);
  world->data = nullptr;
  --g_host->liveWorlds;
  return PF_Err_NONE;
}

// Copies between worlds of one size. A world of another depth is left unchanged, so that reading it
// makes a test fail.
PF_Err Copy(PF_ProgPtr /*effectRef*/, PF_LayerDef* src, PF_LayerDef* dst, PF_LRect* from,
            PF_LRect* to) {
  g_host->log.emplace_back(from == nullptr && to == nullptr ? "copy" : "copy part");
  if (const PF_Err err = g_host->Answer("copy"); err != 0) {
    return err;
  }
  const PF_WorldFlags depth = src->world_flags & PF_WorldFlag_DEEP;
  const std::size_t pixelBytes = depth != 0 ? 8 : 4;
  if (src == dst || depth != (dst->world_flags & PF_WorldFlag_DEEP)) {
    return PF_Err_NONE;
  }
  for (A_long y = 0; y < src->height; ++y) {
    std::memcpy(RowOf(dst, y), RowOf(src, y), pixelBytes * static_cast<std::size_t>(src->width));
  }
  return PF_Err_NONE;
}

template <typename Pixel>
PF_Err Fill(PF_ProgPtr /*effectRef*/, const Pixel* color, const PF_LRect* rect,
            PF_LayerDef* world) {
  const char* const name = sizeof(Pixel) == 8 ? "fill16 " : "fill ";
  g_host->log.push_back(name + Numbers({color->alpha, color->red, color->green, color->blue}) +
                        " in " + Numbers({rect->left, rect->top, rect->right, rect->bottom}));
  if (const PF_Err err = g_host->Answer("fill"); err != 0) {
    return err;
  }
  for (A_long y = std::max(rect->top, 0); y < std::min(rect->bottom, world->height); ++y) {
    auto* const row = reinterpret_cast<Pixel*>(RowOf(world, y));
    std::fill(row + std::max(rect->left, 0), row + std::min(rect->right, world->width), *color);
  }
  return PF_Err_NONE;
}

}  // namespace

void FillMaths(PF_ANSICallbacks* maths) {
  maths->sin = [](double x) { return std::sin(x); };
  maths->cos = [](double x) { return std::cos(x); };
  maths->tan = [](double x) { return std::tan(x); };
  maths->atan = [](double x) { return std::atan(x); };
  maths->sqrt = [](double x) { return std::sqrt(x); };
  maths->pow = [](double x, double y) { return std::pow(x, y); };
  maths->strcpy = [](char* to, const char* from) { return std::strcpy(to, from); };
}

FakeHost::FakeHost() {
  g_host = this;
  FillMaths(&utils_.ansi);
  utils_.new_world = NewWorld;
  utils_.dispose_world = DisposeWorld;
  utils_.copy = Copy;
  utils_.fill = Fill<PF_Pixel>;
  utils_.fill16 = Fill<PF_Pixel16>;
  basic_.AcquireSuite = AcquireSuite;
  basic_.ReleaseSuite = ReleaseSuite;
  inData_.utils = &utils_;
  inData_.pica_basicP = &basic_;
}

FakeHost::~FakeHost() { g_host = nullptr; }

PF_Err FakeHost::Answer(const std::string& kind) {
  const int n = ++counts_[kind];
  const auto ofKind = failures.find(kind);
  if (ofKind == failures.end()) {
    return PF_Err_NONE;
  }
  const auto found = ofKind->second.find(n);
  return found == ofKind->second.end() ? PF_Err_NONE : found->second;
}

}  // namespace vitrell
