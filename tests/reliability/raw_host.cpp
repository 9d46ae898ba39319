// A host that passes any record, sound or not, while accessing only valid memory itself.
#include "reliability/raw_host.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <new>

#include "headless/host_maths.h"
#include "headless/platform.h"

namespace vitrell::reliability {
namespace {

constexpr A_long kSmallest = std::numeric_limits<A_long>::min();
constexpr A_long kLargest = std::numeric_limits<A_long>::max();
constexpr PF_Err kFormatFails = 777;

RawHost* g_host = nullptr;

bool IsDeepWorld(const PF_LayerDef& world) { return (world.world_flags & PF_WorldFlag_DEEP) != 0; }

std::size_t PixelBytes(bool deep) { return deep ? sizeof(PF_Pixel16) : sizeof(PF_Pixel); }

std::size_t RoundUp(std::size_t bytes, std::size_t unit) {
  return (bytes + unit - 1) / unit * unit;
}

// --- Callbacks ---

PF_Err CheckoutParam(PF_ProgPtr, PF_ParamIndex, A_long, A_long, A_u_long, PF_ParamDef* param) {
  if (const PF_Err error = g_host->NoteCall(); error != PF_Err_NONE) return error;
  *param = {};
  param->param_type = PF_Param_LAYER;
  param->u.ld = g_host->customRecord;
  ++g_host->openCheckouts;
  return PF_Err_NONE;
}

PF_Err CheckinParam(PF_ProgPtr, PF_ParamDef*) {
  const PF_Err answer = g_host->NoteCall();
  --g_host->openCheckouts;
  return answer;
}

PF_Err Abort(PF_ProgPtr) { return g_host->NoteCall(); }

PF_Err AddParam(PF_ProgPtr, PF_ParamIndex, PF_ParamDef* def) {
  if (const PF_Err error = g_host->NoteCall(); error != PF_Err_NONE) return error;
  g_host->AddRecord(*def);
  return PF_Err_NONE;
}

PF_Err NewWorld(PF_ProgPtr, A_long width, A_long height, PF_NewWorldFlags flags,
                PF_LayerDef* world) {
  if (const PF_Err error = g_host->NoteCall(); error != PF_Err_NONE) return error;
  constexpr A_long kMostPixels = 1 << 20;
  const RawHost::Setup& setup = g_host->GetSetup();
  const bool deep = (flags & PF_NewWorldFlag_DEEP_PIXELS) != 0 || setup.deep;
  if (width <= 0 || height <= 0) {
    if (!setup.givesEmptyWorlds) return PF_Err_OUT_OF_MEMORY;
    *world = {};
    world->width = width;
    world->height = height;
    world->world_flags = deep ? PF_WorldFlag_DEEP : 0;
    return PF_Err_NONE;
  }
  if (width > kMostPixels || height > kMostPixels / width) return PF_Err_OUT_OF_MEMORY;
  const bool strange = !setup.onlyOneNewWorldIsStrange || g_host->newWorlds == 1;
  ++g_host->newWorlds;
  *world = g_host->MakeWorld(strange ? setup.newWorlds : WorldKind::kUsual, width, height, deep);
  g_host->liveWorlds += world->data != nullptr ? 1 : 0;
  return PF_Err_NONE;
}

PF_Err DisposeWorld(PF_ProgPtr, PF_LayerDef* world) {
  const PF_Err answer = g_host->NoteCall();
  if (world->data != nullptr) {
    --g_host->liveWorlds;
    g_host->Forget(world->data);
  }
  *world = {};
  return answer;
}

PF_Pixel16 ReadPixel(const void* address, bool deep) {
  if (deep) {
    PF_Pixel16 pixel;
    std::memcpy(&pixel, address, sizeof(pixel));
    return pixel;
  }
  PF_Pixel pixel;
  std::memcpy(&pixel, address, sizeof(pixel));
  const auto widen = [](A_u_char value) { return static_cast<A_u_short>(value * 32768 / 255); };
  return {widen(pixel.alpha), widen(pixel.red), widen(pixel.green), widen(pixel.blue)};
}

void WritePixel(void* address, bool deep, const PF_Pixel16& pixel) {
  if (deep) {
    std::memcpy(address, &pixel, sizeof(pixel));
    return;
  }
  const auto narrow = [](A_u_short value) {
    return static_cast<A_u_char>(std::min(value * 255 / 32768, 255));
  };
  const PF_Pixel shallow = {narrow(pixel.alpha), narrow(pixel.red), narrow(pixel.green),
                            narrow(pixel.blue)};
  std::memcpy(address, &shallow, sizeof(shallow));
}

// Calls visit(x, y, address in a, address in b) where both worlds have memory.
template <typename Visit>
PF_Err ForEachCommonPixel(const PF_LayerDef& a, const PF_LayerDef& b, const Visit& visit,
                          bool backwards = false) {
  const A_long width = std::min(a.width, b.width);
  const A_long height = std::min(a.height, b.height);
  for (A_long row = 0; row < height; ++row) {
    for (A_long column = 0; column < width; ++column) {
      const A_long x = backwards ? width - 1 - column : column;
      const A_long y = backwards ? height - 1 - row : row;
      void* const inA = g_host->PixelAt(a, x, y, PixelBytes(IsDeepWorld(a)));
      void* const inB = g_host->PixelAt(b, x, y, PixelBytes(IsDeepWorld(b)));
      if (inA == nullptr || inB == nullptr) continue;
      if (const PF_Err error = visit(x, y, inA, inB); error != 0) return error;
    }
  }
  return PF_Err_NONE;
}

PF_Err Copy(PF_ProgPtr, PF_LayerDef* from, PF_LayerDef* to, PF_LRect*, PF_LRect*) {
  if (const PF_Err error = g_host->NoteCall(); error != PF_Err_NONE) return error;
  if (from->data == nullptr || to->data == nullptr) {
    return g_host->GetSetup().copiesFromNothing ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM;
  }
  const bool deep = IsDeepWorld(*from);
  return ForEachCommonPixel(*from, *to, [&](A_long, A_long, void* source, void* destination) {
    if (IsDeepWorld(*to) == deep) {
      std::memmove(destination, source, PixelBytes(deep));
      return PF_Err_NONE;
    }
    WritePixel(destination, IsDeepWorld(*to), ReadPixel(source, deep));
    return PF_Err_NONE;
  });
}

PF_Err FillWith(const PF_Pixel16& color, const PF_LRect* rect, PF_LayerDef* world) {
  if (const PF_Err error = g_host->NoteCall(); error != PF_Err_NONE) return error;
  return ForEachCommonPixel(*world, *world, [&](A_long x, A_long y, void* pixel, void*) {
    const bool inside = rect == nullptr ||
                        (x >= rect->left && x < rect->right && y >= rect->top && y < rect->bottom);
    if (inside) WritePixel(pixel, IsDeepWorld(*world), color);
    return PF_Err_NONE;
  });
}

PF_Err Fill(PF_ProgPtr, const PF_Pixel*, const PF_LRect* rect, PF_LayerDef* world) {
  return FillWith({}, rect, world);
}

PF_Err Fill16(PF_ProgPtr, const PF_Pixel16*, const PF_LRect* rect, PF_LayerDef* world) {
  return FillWith({}, rect, world);
}

template <typename Pixel, typename Function>
PF_Err IterateOver(PF_LayerDef* source, void* refcon, Function function, PF_LayerDef* destination) {
  const RawHost::Setup& setup = g_host->GetSetup();
  if (source->data == nullptr || destination->data == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  const auto visit = [&](A_long x, A_long y, void* in, void* out) {
    if (x == setup.width / 2 && y == setup.height / 2) {
      if (const PF_Err error = g_host->NoteCall(); error != PF_Err_NONE) return error;
    }
    return function(refcon, x, y, static_cast<Pixel*>(in), static_cast<Pixel*>(out));
  };
  return ForEachCommonPixel(*source, *destination, visit, setup.iteratesBackwards);
}

PF_Err Iterate8(PF_InData*, A_long, A_long, PF_LayerDef* source, const PF_LRect*, void* refcon,
                PF_IteratePixel8Func function, PF_LayerDef* destination) {
  return IterateOver<PF_Pixel>(source, refcon, function, destination);
}

PF_Err Iterate16(PF_InData*, A_long, A_long, PF_LayerDef* source, const PF_LRect*, void* refcon,
                 PF_IteratePixel16Func function, PF_LayerDef* destination) {
  return IterateOver<PF_Pixel16>(source, refcon, function, destination);
}

PF_Err GetPixelFormat(const PF_LayerDef* world, PF_PixelFormat* format) {
  if (const PF_Err error = g_host->NoteCall(); error != PF_Err_NONE) return error;
  switch (g_host->GetSetup().format) {
    case FormatAnswer::kShallow:
      *format = PF_PixelFormat_ARGB32;
      return PF_Err_NONE;
    case FormatAnswer::kDeep:
      *format = PF_PixelFormat_ARGB64;
      return PF_Err_NONE;
    case FormatAnswer::kFloat:
      *format = PF_PixelFormat_ARGB128;
      return PF_Err_NONE;
    case FormatAnswer::kInvalid:
      *format = PF_PixelFormat_INVALID;
      return PF_Err_NONE;
    case FormatAnswer::kFails:
      return kFormatFails;
    default:
      *format = IsDeepWorld(*world) ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB32;
      return PF_Err_NONE;
  }
}

PF_Err UpdateParamUI(PF_ProgPtr, PF_ParamIndex, const PF_ParamDef*) { return g_host->NoteCall(); }

SPErr AcquireSuite(const char* name, std::int32_t, const void** suite) {
  if (const PF_Err error = g_host->NoteCall(); error != PF_Err_NONE) return error;
  const struct {
    const char* name;
    const void* table;
  } offered[] = {{kPFAnsiSuite, &g_host->ansiSuite},
                 {kPFParamUtilsSuite, &g_host->paramUtilsSuite},
                 {kPFIterate8Suite, &g_host->iterate8Suite},
                 {kPFIterate16Suite, &g_host->iterate16Suite},
                 {kPFWorldSuite, &g_host->worldSuite}};
  for (const auto& one : offered) {
    if (std::strcmp(one.name, name) == 0) {
      *suite = one.table;
      ++g_host->openSuites;
      return PF_Err_NONE;
    }
  }
  return PF_Err_BAD_CALLBACK_PARAM;
}

SPErr ReleaseSuite(const char*, std::int32_t) {
  const PF_Err answer = g_host->NoteCall();
  --g_host->openSuites;
  return answer;
}

}  // namespace

// --- Memory ---

GuardedPixels::GuardedPixels(std::size_t bytes, MemoryEnd end) : bytes_(bytes) {
  if (end == MemoryEnd::kHeap) {
    heap_ = std::make_unique<std::byte[]>(bytes);
    begin_ = heap_.get();
  } else {
    Map(end);
  }
  // Every byte is that of a legal 16-bit channel.
  for (std::size_t i = 0; i < bytes; ++i) {
    begin_[i] = static_cast<std::byte>((i * 37U + 11U) % 128U);
  }
}

void GuardedPixels::Map(MemoryEnd end) {
  mappedBytes_ = RoundUp(std::max<std::size_t>(bytes_, 1), headless::PageBytes());
  mapped_ = headless::MapBetweenClosedPages(mappedBytes_);
  if (mapped_ == nullptr) throw std::bad_alloc();
  begin_ = end == MemoryEnd::kFirst ? mapped_ : mapped_ + mappedBytes_ - bytes_;
}

GuardedPixels::~GuardedPixels() {
  if (mapped_ != nullptr) headless::UnmapBetweenClosedPages(mapped_, mappedBytes_);
}

bool GuardedPixels::Contains(const void* address, std::size_t bytes) const {
  const auto* const first = static_cast<const std::byte*>(address);
  const auto position = reinterpret_cast<std::uintptr_t>(first);
  const auto base = reinterpret_cast<std::uintptr_t>(begin_);
  return position >= base && position + bytes <= base + bytes_;
}

std::uint64_t GuardedPixels::Checksum() const {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (std::size_t i = 0; i < bytes_; ++i) {
    hash = (hash ^ static_cast<std::uint64_t>(begin_[i])) * 0x100000001B3U;
  }
  return hash;
}

const char* NameOf(WorldKind kind) {
  static constexpr const char* kNames[] = {"usual",          "no data",        "no width",
                                           "no height",      "negative width", "negative height",
                                           "one pixel",      "one row",        "one column",
                                           "odd padding",    "bottom up",      "small extent",
                                           "large extent",   "shifted extent", "inverted extent",
                                           "far extent",     "huge extent",    "long extent",
                                           "other size",     "deep flag only", "shallow flag only",
                                           "rows too short", "no row bytes",   "odd deep rows",
                                           "strange flags"};
  static_assert(std::size(kNames) == static_cast<std::size_t>(WorldKind::kCount));
  return kNames[static_cast<std::size_t>(kind)];
}

// --- The host ---

RawHost::RawHost(PF_EntryPoint entryPoint, const Setup& setup)
    : entryPoint_(entryPoint), setup_(setup) {
  g_host = this;
  const PF_ANSICallbacksSuite1& maths = headless::HostMaths();
  static_assert(sizeof(utils.ansi) >= sizeof(maths));
  std::memcpy(&utils.ansi, &maths, sizeof(maths));
  utils.new_world = NewWorld;
  utils.dispose_world = DisposeWorld;
  utils.copy = Copy;
  utils.fill = Fill;
  utils.fill16 = Fill16;
  ansiSuite = maths;
  paramUtilsSuite.PF_UpdateParamUI = UpdateParamUI;
  iterate8Suite.iterate = Iterate8;
  iterate16Suite.iterate = Iterate16;
  worldSuite.PF_GetPixelFormat = GetPixelFormat;
  basic.AcquireSuite = AcquireSuite;
  basic.ReleaseSuite = ReleaseSuite;
  in.inter.checkout_param = CheckoutParam;
  in.inter.checkin_param = CheckinParam;
  in.inter.abort = Abort;
  in.inter.add_param = AddParam;
  in.utils = &utils;
  in.pica_basicP = &basic;
  in.time_scale = 30;
  in.time_step = 1;
  inPointer = &in;
  outPointer = &out;
  records_.emplace_back();
  if (entryPoint_(PF_Cmd_PARAMS_SETUP, &in, &out, nullptr, nullptr, nullptr) != 0) {
    throw std::bad_alloc();
  }
  records_[0].u.ld = MakeWorld(setup.input, setup.width, setup.height, setup.deep);
  const std::size_t beforeOutput = pixels_.size();
  outputRecord = MakeWorld(setup.output, setup.width, setup.height, setup.deep);
  output = &outputRecord;
  if (pixels_.size() > beforeOutput) outputPixels_ = pixels_.back().get();
  customRecord = MakeWorld(setup.custom, setup.width + 2, setup.height + 3, setup.deep);
  for (PF_ParamDef& record : records_) {
    if (record.param_type == PF_Param_POINT) {
      record.u.td.x_value = (setup.width / 2) << 16;
      record.u.td.y_value = (setup.height / 2) << 16;
    }
    params.push_back(&record);
  }
  params.push_back(nullptr);
  paramsPointer = params.data();
}

RawHost::~RawHost() { g_host = nullptr; }

PF_Err RawHost::Send(PF_Cmd cmd) {
  newWorlds = 0;
  return entryPoint_(cmd, inPointer, outPointer, paramsPointer, output, nullptr);
}

void RawHost::AddRecord(const PF_ParamDef& record) {
  // A second set-up must not move the records that the parameters point to.
  if (params.empty()) records_.push_back(record);
}

PF_Err RawHost::NoteCall() {
  if (onCall) onCall();
  ++calls;
  const bool fails =
      std::find(failingCalls.begin(), failingCalls.end(), calls) != failingCalls.end();
  if (!fails) return PF_Err_NONE;
  ++failures;
  return kPlannedFault;
}

void RawHost::FillPixels(const std::function<std::byte()>& next) {
  for (const auto& pixels : pixels_) {
    std::generate(pixels->begin(), pixels->begin() + pixels->size(), next);
  }
}

std::uint64_t RawHost::OutputChecksum() const {
  return outputPixels_ != nullptr ? outputPixels_->Checksum() : 0;
}

std::uint64_t RawHost::ChecksumOf(const PF_LayerDef& world) const {
  for (const auto& pixels : pixels_) {
    if (pixels->Contains(world.data, 1)) return pixels->Checksum();
  }
  return 0;
}

std::string RawHost::Outstanding() const {
  if (liveWorlds == 0 && openSuites == 0 && openCheckouts == 0) return "";
  return "not given back: " + std::to_string(liveWorlds) + " worlds, " +
         std::to_string(openSuites) + " suites, " + std::to_string(openCheckouts) + " check-outs";
}

void RawHost::Forget(const void* data) {
  const auto holds = [data](const auto& pixels) { return pixels->Contains(data, 1); };
  pixels_.erase(std::remove_if(pixels_.begin(), pixels_.end(), holds), pixels_.end());
}

void* RawHost::PixelAt(const PF_LayerDef& world, A_long x, A_long y, std::size_t bytes) const {
  if (world.data == nullptr) return nullptr;
  const auto base = reinterpret_cast<std::uintptr_t>(world.data);
  const std::int64_t offset =
      std::int64_t{y} * world.rowbytes + std::int64_t{x} * static_cast<std::int64_t>(bytes);
  auto* const address = reinterpret_cast<void*>(base + static_cast<std::uintptr_t>(offset));
  const bool known = std::any_of(pixels_.begin(), pixels_.end(), [&](const auto& pixels) {
    return pixels->Contains(address, bytes);
  });
  return known ? address : nullptr;
}

PF_LayerDef RawHost::MakeWorld(WorldKind kind, A_long width, A_long height, bool deep) {
  if (kind == WorldKind::kOnePixel || kind == WorldKind::kOneColumn) width = 1;
  if (kind == WorldKind::kOnePixel || kind == WorldKind::kOneRow) height = 1;
  if (kind == WorldKind::kOtherSize) {
    width = std::max(width - 4, 1);
    height += 3;
  }
  const bool deepPixels = kind == WorldKind::kOddDeepRows || kind == WorldKind::kShallowFlagOnly ||
                          (deep && kind != WorldKind::kDeepFlagOnly);
  const auto pixelBytes = static_cast<A_long>(PixelBytes(deepPixels));
  A_long rowBytes = width * pixelBytes;
  if (kind == WorldKind::kOddPadding) rowBytes += deepPixels ? 2 : 3;
  if (kind == WorldKind::kOddDeepRows) rowBytes += 3;
  if (kind == WorldKind::kRowsTooShort) rowBytes -= 1;
  if (kind == WorldKind::kNoRowBytes) rowBytes = 0;
  PF_LayerDef world = {};
  world.width = width;
  world.height = height;
  world.rowbytes = rowBytes;
  world.extent_hint = {0, 0, width, height};
  world.pix_aspect_ratio = {1, 1};
  world.world_flags = deepPixels ? PF_WorldFlag_DEEP : 0;
  if (kind == WorldKind::kDeepFlagOnly) world.world_flags = PF_WorldFlag_DEEP;
  if (kind == WorldKind::kShallowFlagOnly) world.world_flags = 0;
  if (kind == WorldKind::kStrangeFlags) world.world_flags |= ~PF_WorldFlag_DEEP;
  // The last row has no padding behind it.
  const A_long lastRow = std::max(rowBytes, kind == WorldKind::kNoRowBytes ? pixelBytes : 0);
  const A_long padding = kind == WorldKind::kOddPadding || kind == WorldKind::kOddDeepRows
                             ? rowBytes - width * pixelBytes
                             : 0;
  const A_long bytes = rowBytes * (height - 1) + lastRow - padding;
  if (kind != WorldKind::kNoData) {
    pixels_.push_back(std::make_unique<GuardedPixels>(static_cast<std::size_t>(bytes), setup_.end));
    world.data = pixels_.back()->begin();
  }
  switch (kind) {
    case WorldKind::kNoWidth:
      world.width = 0;
      break;
    case WorldKind::kNoHeight:
      world.height = 0;
      break;
    case WorldKind::kNegativeWidth:
      world.width = -width;
      break;
    case WorldKind::kNegativeHeight:
      world.height = kSmallest;
      break;
    case WorldKind::kBottomUp:
      world.data = pixels_.back()->begin() + rowBytes * (height - 1);
      world.rowbytes = -rowBytes;
      break;
    case WorldKind::kSmallExtent:
      world.extent_hint = {2, 1, width - 3, height - 2};
      break;
    case WorldKind::kLargeExtent:
      world.extent_hint = {-width / 5 - 1, -height / 5 - 1, width + width / 5 + 1,
                           height + height / 5 + 1};
      break;
    case WorldKind::kShiftedExtent:
      world.extent_hint = {5, -3, width + 5, height - 3};
      break;
    case WorldKind::kInvertedExtent:
      world.extent_hint = {width, height, 0, 0};
      break;
    case WorldKind::kFarExtent:
      world.extent_hint = {kLargest - width, kSmallest, kLargest, kSmallest + height};
      break;
    case WorldKind::kHugeExtent:
      world.extent_hint = {kSmallest, kSmallest, kLargest, kLargest};
      break;
    case WorldKind::kLongExtent:
      world.extent_hint = {0, 0, kLargest, 1};
      break;
    default:
      break;
  }
  return world;
}

}  // namespace vitrell::reliability
