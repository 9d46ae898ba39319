// One render as the answer to a request.
#ifndef VITRELL_PANEL_MODEL_ANSWERING_H_
#define VITRELL_PANEL_MODEL_ANSWERING_H_

#include <atomic>
#include <exception>

#include "panel/model/frame_effect.h"
#include "panel/model/renderer.h"

namespace vitrell::panel {

// Renders, the lens alone too if that is wanted, and adds all of it to an answer that holds no more
// than the frame. False if it was stopped; the answer then stays as it was.
bool RenderInto(RenderAnswer& answer, FrameEffect& effect, const EffectOrder& order, bool wantMask);

// What is answered where rendering itself failed, above all for want of memory.
RenderAnswer AnswerOfFailure(std::uint64_t request, const std::exception& failure);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_ANSWERING_H_
