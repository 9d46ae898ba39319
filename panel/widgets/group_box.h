// A group of controls that opens and closes.
#ifndef VITRELL_PANEL_WIDGETS_GROUP_BOX_H_
#define VITRELL_PANEL_WIDGETS_GROUP_BOX_H_

#include <QString>
#include <QWidget>

class QToolButton;
class QVBoxLayout;

namespace vitrell::panel {

// Of what is in a group, in pixels.
inline constexpr int kGroupIndent = 14;

// A click on the title opens and closes the group, a double click resets what is in it; a button
// does the same for the keyboard while anything in the group is changed.
class GroupBox : public QWidget {
  Q_OBJECT

 public:
  GroupBox(const QString& title, bool open, QWidget* parent);

  QVBoxLayout* Body() const { return bodyLayout_; }
  QString Title() const;
  bool IsOpen() const;
  void Open(bool open);
  // The title is bold while anything in the group differs from its default.
  void MarkChanged(bool changed);

 Q_SIGNALS:
  void Reset();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QToolButton* title_;
  QToolButton* reset_;
  QWidget* body_;
  QVBoxLayout* bodyLayout_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_GROUP_BOX_H_
