// Calling the headless host.
#include "cli/effect_run.h"

#include <cstdio>

#include "cli/call_report.h"
#include "cli/failure.h"
#include "cli/interrupt.h"
#include "media/standard_streams.h"

namespace vitrell::cli {

// A picture of one pixel runs the same passes and takes no time.
void EffectRun::Foresee(const look::Settings& settings, bool hasLayer) {
  if (!bar_.IsOn()) return;
  headless::WorldBuffer pixel(1, 1, false);
  pixel.FillBytes(0);
  headless::WorldBuffer result(1, 1, false);
  settings.Apply(host_, pixel.Width(), pixel.Height());
  headless::RenderOptions options;
  options.cancel = &InterruptFlag();
  stages_ = CountPasses(host_.Render(pixel, result, hasLayer ? &pixel : nullptr, options)) + 2;
  bar_.SetStages(stages_);
}

double EffectRun::Render(const look::Settings& settings, const headless::WorldBuffer& picture,
                         const headless::WorldBuffer* layer, headless::WorldBuffer& result) {
  settings.Apply(host_, picture.Width(), picture.Height());
  headless::RenderOptions options;
  options.threads = arguments_.threads;
  options.cancel = &InterruptFlag();
  if (!isThorough_) {
    options.verifyInputs = false;
    options.newWorldLayout.fresh = headless::FreshPixels::kUnset;
  }
  if (bar_.IsOn()) {
    options.progress = [this](const headless::RenderProgress& progress) {
      bar_.Show(progress.pass + 1, progress.rowsTotal > 0
                                       ? static_cast<double>(progress.rowsDone) / progress.rowsTotal
                                       : 0.0);
    };
  }
  const headless::RenderResult rendered = host_.Render(picture, result, layer, options);
  // The effect does not return the error of every interrupted pass.
  ThrowIfInterrupted();
  if (arguments_.verbose) std::fputs(ReportCalls(rendered).c_str(), stderr);
  if (!rendered.Ok()) ThrowEffectFailure(rendered);
  for (const std::string& complaint : rendered.complaints) {
    notes_.Complain("the effect misbehaved: " + complaint);
  }
  return rendered.seconds;
}

void EffectRun::ThrowEffectFailure(const headless::RenderResult& rendered) const {
  std::string message = media::ShownSource(arguments_.input) +
                        ": the effect could not render it: " + rendered.description + ". ";
  if (!rendered.message.empty()) message += "It says: " + rendered.message + " ";
  const bool noMemory = rendered.error == PF_Err_OUT_OF_MEMORY;
  message +=
      noMemory ? "Use a smaller picture or smaller amounts." : "--verbose shows how far it came.";
  // Frames beside this one may need less, later.
  throw Failure(noMemory ? kTryLater : kFailed, message);
}

}  // namespace vitrell::cli
