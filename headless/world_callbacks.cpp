// Creates, disposes of, copies and fills worlds.
#include <cstring>
#include <memory>
#include <utility>

#include "headless/host_error.h"
#include "headless/host_state.h"
#include "headless/host_tables.h"

namespace vitrell::headless {
namespace {

constexpr int kJunkByte = 0xCD;

bool Legal(A_long width, A_long height) {
  return width >= 0 && height >= 0 && width <= kMaxWorldSize && height <= kMaxWorldSize;
}

bool WantsDeep(const HostState& host, PF_NewWorldFlags flags) {
  if ((flags & PF_NewWorldFlag_DEEP_PIXELS) != 0) return true;
  return host.Options().newWorldDepth == NewWorldDepth::kRenderDepth && host.renderDeep;
}

WorldLayout LayoutFor(const HostState& host, bool deep, PF_NewWorldFlags flags) {
  WorldLayout layout = host.Options().newWorldLayout;
  if (deep) {
    layout.baseOffset &= ~1;
    layout.rowPadding += layout.rowPadding & 1;
  }
  if ((flags & PF_NewWorldFlag_CLEAR_PIXELS) != 0) layout.fresh = FreshPixels::kZero;
  return layout;
}

void FailRecord(HostState& host, PF_LayerDef& world) {
  const bool junk = host.recorder.GetFaults().GetFailedWorldRecord() == FailedWorldRecord::kJunk;
  std::memset(&world, junk ? kJunkByte : 0, sizeof(world));
}

PF_Err MakeWorld(HostState& host, A_long width, A_long height, PF_NewWorldFlags flags,
                 PF_LayerDef& world, std::string& name) {
  try {
    const bool deep = WantsDeep(host, flags);
    auto buffer = host.spares.Make(width, height, deep, LayoutFor(host, deep, flags));
    const PF_WorldFlags extra = host.Options().extraWorldFlags & ~PF_WorldFlag_DEEP;
    buffer->SetWorldFlags(buffer->Def().world_flags | extra);
    const KnownWorld known = host.worlds.AddOwned(std::move(buffer));
    name = known.name + " ";
    world = known.def;
    return PF_Err_NONE;
  } catch (const HostError&) {
    FailRecord(host, world);
    return PF_Err_OUT_OF_MEMORY;
  }
}

std::string CopyText(const HostState& host, const PF_LayerDef* source,
                     const PF_LayerDef* destination, const PF_LRect* from, const PF_LRect* to) {
  std::string text =
      "copy " + host.worlds.NameOf(source) + " -> " + host.worlds.NameOf(destination);
  if (from != nullptr) text += " from " + RectText(from);
  if (to != nullptr) text += " to " + RectText(to);
  return text;
}

PF_Err Copy(PF_ProgPtr effectRef, PF_LayerDef* source, PF_LayerDef* destination, PF_LRect* from,
            PF_LRect* to) {
  HostState* host = HostOf(effectRef, "copy");
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, CallKind::kCopy);
  const std::string text = CopyText(*host, source, destination, from, to);
  if (call.Fault() != PF_Err_NONE) return call.Answer(text, call.Fault());
  const std::optional<PixelView> in = host->ViewOf(source, "copy");
  const std::optional<PixelView> out = host->ViewOf(destination, "copy");
  if (!in || !out) return call.Answer(text, PF_Err_BAD_CALLBACK_PARAM);
  CopyPixels(*in, *out, from, to, host->pool, host->Threads());
  return call.Answer(text, PF_Err_NONE);
}

template <typename Pixel>
std::string ColorText(const Pixel* color) {
  if (color == nullptr) return "null";
  return std::to_string(color->alpha) + "," + std::to_string(color->red) + "," +
         std::to_string(color->green) + "," + std::to_string(color->blue);
}

template <typename Pixel>
PF_Err FillWorld(PF_ProgPtr effectRef, const char* name, CallKind kind, const Pixel* color,
                 const PF_LRect* rect, PF_LayerDef* world) {
  HostState* host = HostOf(effectRef, name);
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, kind);
  const std::string text = std::string(name) + " " + host->worlds.NameOf(world) + " " +
                           ColorText(color) + " in " + RectText(rect);
  if (call.Fault() != PF_Err_NONE) return call.Answer(text, call.Fault());
  const std::optional<PixelView> view = host->ViewOf(world, name);
  if (!view) return call.Answer(text, PF_Err_BAD_CALLBACK_PARAM);
  if (view->deep != (sizeof(Pixel) == sizeof(PF_Pixel16))) {
    host->Complain(std::string("called ") + name + " on " + host->worlds.NameOf(world) +
                   ", which has another depth");
    return call.Answer(text, PF_Err_BAD_CALLBACK_PARAM);
  }
  FillPixels(*view, color != nullptr ? *color : Pixel{}, rect);
  return call.Answer(text, PF_Err_NONE);
}

PF_Err Fill(PF_ProgPtr effectRef, const PF_Pixel* color, const PF_LRect* rect, PF_LayerDef* world) {
  return FillWorld(effectRef, "fill", CallKind::kFill, color, rect, world);
}

PF_Err Fill16(PF_ProgPtr effectRef, const PF_Pixel16* color, const PF_LRect* rect,
              PF_LayerDef* world) {
  return FillWorld(effectRef, "fill16", CallKind::kFill16, color, rect, world);
}

}  // namespace

PF_Err NewWorldCallback(PF_ProgPtr effectRef, A_long width, A_long height, PF_NewWorldFlags flags,
                        PF_LayerDef* world) {
  HostState* host = HostOf(effectRef, "new_world");
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, CallKind::kNewWorld);
  const std::string size =
      std::to_string(width) + "x" + std::to_string(height) + " flags " + std::to_string(flags);
  if (world == nullptr || !Legal(width, height)) {
    host->Complain("asked for a world of an impossible size or without a record to fill");
    return call.Answer("new_world " + size, PF_Err_BAD_CALLBACK_PARAM);
  }
  if (call.Fault() != PF_Err_NONE) {
    FailRecord(*host, *world);
    return call.Answer("new_world " + size, call.Fault());
  }
  std::string name;
  const PF_Err error = MakeWorld(*host, width, height, flags, *world, name);
  return call.Answer("new_world " + name + size, error);
}

PF_Err DisposeWorldCallback(PF_ProgPtr effectRef, PF_LayerDef* world) {
  HostState* host = HostOf(effectRef, "dispose_world");
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, CallKind::kDisposeWorld);
  const std::string name = host->worlds.NameOf(world);
  const std::string text = "dispose_world " + name;
  // There is nothing to dispose of: harmless, but logged.
  if (name == "none") return call.Answer(text, call.Fault());
  std::unique_ptr<WorldBuffer> buffer;
  switch (host->worlds.Remove(world, buffer)) {
    case WorldRegistry::Removal::kBorrowed:
      host->Complain("disposed of the " + name + " world, which is the host's");
      return call.Answer(text, PF_Err_BAD_CALLBACK_PARAM);
    case WorldRegistry::Removal::kAlreadyDisposed:
      host->Complain("disposed of a world a second time");
      return call.Answer(text, PF_Err_BAD_CALLBACK_PARAM);
    case WorldRegistry::Removal::kUnknown:
      host->Complain("disposed of a world that the host did not make");
      return call.Answer(text, PF_Err_BAD_CALLBACK_PARAM);
    case WorldRegistry::Removal::kDone:
      break;
  }
  if (const auto damage = buffer->Damage()) {
    host->Complain("wrote outside " + name + ". " + *damage);
  } else {
    host->spares.Keep(std::move(buffer));
  }
  return call.Answer(text, call.Fault());
}

void FillWorldCallbacks(PF_UtilCallbacks& callbacks) {
  callbacks.new_world = NewWorldCallback;
  callbacks.dispose_world = DisposeWorldCallback;
  callbacks.copy = Copy;
  callbacks.fill = Fill;
  callbacks.fill16 = Fill16;
}

}  // namespace vitrell::headless
