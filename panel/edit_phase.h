// Where a change made by hand stands.
#ifndef VITRELL_PANEL_EDIT_PHASE_H_
#define VITRELL_PANEL_EDIT_PHASE_H_

namespace vitrell::panel {

// kDragging: more changes of the same movement follow. kDone: the hand rests.
enum class EditPhase { kDragging, kDone };

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_EDIT_PHASE_H_
