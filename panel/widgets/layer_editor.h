// The file that a layer's picture is taken from.
#ifndef VITRELL_PANEL_WIDGETS_LAYER_EDITOR_H_
#define VITRELL_PANEL_WIDGETS_LAYER_EDITOR_H_

#include "panel/widgets/value_editor.h"

class QLineEdit;
class QToolButton;

namespace vitrell::panel {

// The name can be typed, chosen in a file dialog, or dropped.
class LayerEditor : public ValueEditor {
  Q_OBJECT

 public:
  LayerEditor(const QString& spokenName, QWidget* parent);

  void ShowValue(const look::Value& value) override;

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void OpenDialog();
  void Set(const QString& path);

  QString path_;
  QLineEdit* field_;
  QToolButton* choose_;
  QToolButton* clear_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_LAYER_EDITOR_H_
