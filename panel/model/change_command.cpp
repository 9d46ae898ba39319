// Going back and forth.
#include "panel/model/change_command.h"

#include <algorithm>
#include <utility>

#include "panel/model/document.h"

namespace vitrell::panel {

ChangeCommand::ChangeCommand(Document& document, std::vector<ControlChange> changes,
                             const QString& text, int drag)
    : QUndoCommand(text), document_(document), changes_(std::move(changes)), drag_(drag) {}

void ChangeCommand::undo() { document_.Restore(changes_, false); }

void ChangeCommand::redo() { document_.Restore(changes_, true); }

bool ChangeCommand::mergeWith(const QUndoCommand* other) {
  // All commands of this stack are of this class.
  const auto& later = static_cast<const ChangeCommand&>(*other);
  if (later.drag_ != drag_) return false;
  for (const ControlChange& change : later.changes_) {
    const auto found =
        std::find_if(changes_.begin(), changes_.end(),
                     [&](const ControlChange& mine) { return mine.control == change.control; });
    if (found == changes_.end()) {
      changes_.push_back(change);
    } else {
      found->after = change.after;
    }
  }
  setObsolete(std::all_of(changes_.begin(), changes_.end(), [](const ControlChange& change) {
    return change.before == change.after;
  }));
  return true;
}

}  // namespace vitrell::panel
