// One step of the undo list.
#ifndef VITRELL_PANEL_MODEL_CHANGE_COMMAND_H_
#define VITRELL_PANEL_MODEL_CHANGE_COMMAND_H_

#include <QString>
#include <QUndoCommand>
#include <vector>

#include "panel/model/control_state.h"

namespace vitrell::panel {

class Document;

// Commands of the same drag become one, which is dropped if the drag ends where it began.
class ChangeCommand : public QUndoCommand {
 public:
  ChangeCommand(Document& document, std::vector<ControlChange> changes, const QString& text,
                int drag);

  void undo() override;
  void redo() override;
  int id() const override { return 1; }
  bool mergeWith(const QUndoCommand* other) override;

 private:
  Document& document_;
  std::vector<ControlChange> changes_;
  int drag_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_CHANGE_COMMAND_H_
