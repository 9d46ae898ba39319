// The iterate suites: checks the effect's request, then runs the pass.
#include <algorithm>
#include <optional>

#include "headless/current_host.h"
#include "headless/host_state.h"
#include "headless/host_tables.h"
#include "headless/iterate.h"

namespace vitrell::headless {
namespace {

template <typename Pixel>
constexpr bool kDeepPixel = sizeof(Pixel) == sizeof(PF_Pixel16);

std::string PassText(const HostState& host, const char* name, const PF_LayerDef* source,
                     const PF_LayerDef* destination, A_long progressBase, A_long progressFinal,
                     const PF_LRect* area, const void* refcon) {
  std::string text = std::string(name) + " " + host.worlds.NameOf(source) + " -> " +
                     host.worlds.NameOf(destination) + " rows " + std::to_string(progressBase) +
                     ".." + std::to_string(progressFinal);
  if (area != nullptr) text += " area " + RectText(area);
  if (refcon == nullptr) text += " no refcon";
  return text;
}

// Without an area: the intersection of both worlds, or the whole destination if there is no source.
PF_LRect ClippedArea(const PF_LRect* area, const PixelView& source, const PixelView& destination) {
  PF_LRect whole = {0, 0, destination.width, destination.height};
  if (source.data != nullptr) {
    whole.right = std::min(whole.right, source.width);
    whole.bottom = std::min(whole.bottom, source.height);
  }
  if (area == nullptr) return whole;
  return {std::max(area->left, whole.left), std::max(area->top, whole.top),
          std::min(area->right, whole.right), std::min(area->bottom, whole.bottom)};
}

// Sets the worlds of a pass; false, with a complaint, if they are unsuitable.
template <typename Pixel>
bool TakeWorlds(HostState& host, const char* name, const PF_LayerDef* source,
                const PF_LayerDef* destination, PixelPass<Pixel>& pass) {
  if (source != nullptr) {
    const std::optional<PixelView> in = host.ViewOf(source, name);
    if (!in) return false;
    pass.source = *in;
  }
  const std::optional<PixelView> out = host.ViewOf(destination, name);
  if (!out) return false;
  pass.destination = *out;
  const bool sourceSuits = source == nullptr || pass.source.deep == kDeepPixel<Pixel>;
  if (!sourceSuits || pass.destination.deep != kDeepPixel<Pixel>) {
    host.Complain(std::string("called ") + name + " from " + host.worlds.NameOf(source) + " to " +
                  host.worlds.NameOf(destination) + ", of which at least one has another depth");
    return false;
  }
  return true;
}

PassSettings SettingsFor(HostState& host, A_long progressFinal) {
  const RenderOptions& options = host.Options();
  PassSettings settings;
  settings.threads = host.Threads();
  settings.order = options.order;
  settings.seed = options.seed;
  settings.cancel = options.cancel;
  const int pass = ++host.passes;
  if (options.progress && progressFinal != 0) {
    settings.progress = [&options, pass](A_long done, A_long total) {
      options.progress({pass, done, total});
    };
  }
  return settings;
}

template <typename Pixel>
PF_Err Iterate(const char* name, CallKind kind, PF_InData* inData, A_long progressBase,
               A_long progressFinal, PF_LayerDef* source, const PF_LRect* area, void* refcon,
               typename PixelPass<Pixel>::Function function, PF_LayerDef* destination) {
  HostState* host = CurrentHost();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, kind);
  const std::string text =
      PassText(*host, name, source, destination, progressBase, progressFinal, area, refcon);
  if (call.Fault() != PF_Err_NONE) return call.Answer(text, call.Fault());
  if (inData == nullptr || inData->effect_ref != host->EffectRef() || function == nullptr) {
    host->Complain(std::string("called ") + name + " without its input record or a function");
    return call.Answer(text, PF_Err_BAD_CALLBACK_PARAM);
  }
  PixelPass<Pixel> pass;
  if (!TakeWorlds(*host, name, source, destination, pass)) {
    return call.Answer(text, PF_Err_BAD_CALLBACK_PARAM);
  }
  pass.area = ClippedArea(area, pass.source, pass.destination);
  pass.refcon = refcon;
  pass.function = function;
  const PassOutcome outcome = RunPass(pass, SettingsFor(*host, progressFinal), host->pool, host);
  if (outcome.threw) {
    host->Complain(std::string("let an exception leave the function of a pass of ") + name);
  }
  return call.Answer(text, outcome.error);
}

PF_Err Iterate8(PF_InData* inData, A_long progressBase, A_long progressFinal, PF_LayerDef* source,
                const PF_LRect* area, void* refcon, PF_IteratePixel8Func function,
                PF_LayerDef* destination) {
  return Iterate<PF_Pixel>("iterate8", CallKind::kIterate8, inData, progressBase, progressFinal,
                           source, area, refcon, function, destination);
}

PF_Err Iterate16(PF_InData* inData, A_long progressBase, A_long progressFinal, PF_LayerDef* source,
                 const PF_LRect* area, void* refcon, PF_IteratePixel16Func function,
                 PF_LayerDef* destination) {
  return Iterate<PF_Pixel16>("iterate16", CallKind::kIterate16, inData, progressBase, progressFinal,
                             source, area, refcon, function, destination);
}

}  // namespace

PF_Iterate8Suite1 MakeIterate8Suite() {
  return {Iterate8, UnservedCallback, UnservedCallback, UnservedCallback, UnservedCallback};
}

PF_iterate16Suite1 MakeIterate16Suite() { return {Iterate16, UnservedCallback, UnservedCallback}; }

}  // namespace vitrell::headless
