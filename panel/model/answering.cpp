// From worlds to what is shown.
#include "panel/model/answering.h"

#include <chrono>

#include "panel/model/world_image.h"

namespace vitrell::panel {

bool RenderInto(RenderAnswer& answer, FrameEffect& effect, const EffectOrder& order,
                bool wantMask) {
  const auto start = std::chrono::steady_clock::now();
  const EffectOutcome outcome = effect.Render(order);
  if (outcome.stopped) return false;
  EffectOutcome mask;
  if (outcome.world != nullptr && wantMask) mask = effect.RenderMask(order);
  // Without it nobody would ask for it again.
  if (mask.stopped) return false;
  if (outcome.world != nullptr) answer.image = ImageOf(*outcome.world);
  if (mask.world != nullptr) answer.mask = ImageOf(*mask.world);
  const int width = order.frame->Width();
  answer.scale = static_cast<double>(DividedSize(width, 1, order.divisor).width()) / width;
  answer.exact = order.divisor == 1;
  if (answer.exact) answer.world = outcome.world;
  answer.layerSize = outcome.layerSize;
  answer.message = outcome.message;
  answer.seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return true;
}

RenderAnswer AnswerOfFailure(std::uint64_t request, const std::exception& failure) {
  RenderAnswer answer;
  answer.request = request;
  answer.message = QString(
                       "This could not be rendered: %1. Undo the last change, or open a "
                       "smaller picture.")
                       .arg(failure.what());
  return answer;
}

}  // namespace vitrell::panel
