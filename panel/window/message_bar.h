// What the user should know, in the window and not in its way.
#ifndef VITRELL_PANEL_WINDOW_MESSAGE_BAR_H_
#define VITRELL_PANEL_WINDOW_MESSAGE_BAR_H_

#include <QFrame>
#include <QString>
#include <functional>
#include <utility>
#include <vector>

class QHBoxLayout;
class QLabel;

namespace vitrell::panel {

// Shows one message, until it is closed or another one comes. A question stays below what comes
// until it is answered.
class MessageBar : public QFrame {
  Q_OBJECT

 public:
  // A button and what it does; it closes the bar, too.
  using Choice = std::pair<QString, std::function<void()>>;

  explicit MessageBar(QWidget* parent = nullptr);

  // Something went wrong: what, and what to do.
  void ShowProblem(const QString& text);
  void ShowNote(const QString& text);
  void Ask(const QString& text, const std::vector<Choice>& choices);
  // Empty while nothing is shown.
  QString Text() const;

 private:
  void Show(const QString& text, bool isProblem);
  void ReplaceChoices(const std::vector<Choice>& choices);

  QLabel* icon_;
  QLabel* text_;
  QHBoxLayout* buttons_;
  QString question_;  // that waits for an answer, unless the bar is hidden
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WINDOW_MESSAGE_BAR_H_
