// The keyboard and screen readers reach everything of the window.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QAccessibleInterface>
#include <QDockWidget>
#include <QMenuBar>
#include <QTest>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "panel/hand.h"
#include "panel/widgets/group_box.h"
#include "panel/window_fixture.h"

namespace vitrell::panel {
namespace {

using testing::IsEmpty;

class WindowReachTest : public WindowTest {
 protected:
  // Everything that may show does.
  WindowReachTest() {
    for (const char* name : {"plate.1.png", "plate.2.png", "plate.3.png"}) {
      fs::copy_file(picture_, folder_ / name);
    }
    window_->Open(folder_ / "plate.#.png");
    EXPECT_TRUE(WaitUntil([this] { return window_->Work().Shown() != nullptr; }));
    for (GroupBox* const group : window_->findChildren<GroupBox*>()) group->Open(true);
    window_->Messages().Ask("Which one?", {{"&This", [] {}}, {"&That", [] {}}});
    ShowActive(*window_);
  }

  // What Tab should stop at, each by its own proxy.
  std::set<QWidget*> Stops() {
    std::set<QWidget*> stops;
    for (QWidget* const widget : window_->findChildren<QWidget*>()) {
      if (widget->isVisible() && widget->isEnabled() && widget->focusProxy() == nullptr &&
          (widget->focusPolicy() & Qt::TabFocus) == Qt::TabFocus) {
        stops.insert(widget);
      }
    }
    return stops;
  }
  static std::string Describe(const QWidget* widget) {
    std::string text = widget->metaObject()->className();
    for (const QWidget* each = widget; each != nullptr; each = each->parentWidget()) {
      if (!each->objectName().isEmpty()) text += " in " + each->objectName().toStdString();
    }
    return text;
  }
  // All that Tab comes by until it is back at the picture.
  std::set<QWidget*> Walk(Qt::Key key) {
    window_->Work().View().setFocus();
    std::set<QWidget*> seen;
    while (QApplication::focusWidget() != nullptr &&
           seen.insert(QApplication::focusWidget()).second) {
      QTest::keyClick(QApplication::focusWidget(), key);
    }
    return seen;
  }
  static std::vector<std::string> Missing(const std::set<QWidget*>& wanted,
                                          const std::set<QWidget*>& seen) {
    std::vector<std::string> missing;
    for (const QWidget* widget : wanted) {
      if (!seen.contains(const_cast<QWidget*>(widget))) missing.push_back(Describe(widget));
    }
    return missing;
  }
};

TEST_F(WindowReachTest, TabWalksAllThatTakesTheKeyboard) {
  const std::set<QWidget*> stops = Stops();
  ASSERT_GT(stops.size(), Edited().Panel().controls.size());
  EXPECT_THAT(Missing(stops, Walk(Qt::Key_Tab)), IsEmpty());
  EXPECT_THAT(Missing(stops, Walk(Qt::Key_Backtab)), IsEmpty());
}

TEST_F(WindowReachTest, ScreenReadersGetANameForEverything) {
  std::vector<std::string> nameless;
  for (QWidget* const widget : Stops()) {
    QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(widget);
    if (spoken == nullptr || spoken->text(QAccessible::Name).trimmed().isEmpty()) {
      nameless.push_back(Describe(widget));
    }
  }
  EXPECT_THAT(nameless, IsEmpty());
}

// Two of one name could not be told apart by what is heard.
TEST_F(WindowReachTest, NoTwoButtonsOfAPartSoundTheSame) {
  std::map<std::pair<QWidget*, QString>, int> names;
  for (QAbstractButton* const button : window_->findChildren<QAbstractButton*>()) {
    if (!button->isVisible() || (button->focusPolicy() & Qt::TabFocus) == 0) continue;
    const QString name =
        QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name).trimmed();
    EXPECT_EQ(++names[std::pair(button->parentWidget(), name)], 1)
        << name.toStdString() << ", " << Describe(button);
  }
}

TEST_F(WindowReachTest, EveryMenuHasAKeyAndNoTwoActionsShareOne) {
  for (const QAction* menu : window_->menuBar()->actions()) {
    EXPECT_TRUE(menu->text().contains('&')) << menu->text().toStdString();
  }
  std::map<QString, std::string> keys;
  for (const QAction* action : window_->findChildren<QAction*>()) {
    for (const QKeySequence& key : action->shortcuts()) {
      const auto [found, isNew] = keys.emplace(key.toString(), action->text().toStdString());
      EXPECT_TRUE(isNew) << key.toString().toStdString() << ": " << found->second << " and "
                         << action->text().toStdString();
    }
  }
  for (const QKeySequence::StandardKey standard :
       {QKeySequence::Open, QKeySequence::Save, QKeySequence::Undo}) {
    EXPECT_NE(ActionWith(standard), nullptr) << standard;
  }
}

}  // namespace
}  // namespace vitrell::panel
