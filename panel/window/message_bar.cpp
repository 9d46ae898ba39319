// An icon, a text, buttons.
#include "panel/window/message_bar.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

namespace vitrell::panel {

MessageBar::MessageBar(QWidget* parent)
    : QFrame(parent), icon_(new QLabel(this)), text_(new QLabel(this)), buttons_(new QHBoxLayout) {
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::ToolTipBase);
  text_->setForegroundRole(QPalette::ToolTipText);
  text_->setWordWrap(true);
  text_->setTextFormat(Qt::PlainText);
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text_->setAccessibleName(tr("Message"));
  auto* close = new QToolButton(this);
  close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
  close->setAutoRaise(true);
  close->setToolTip(tr("Close this message"));
  close->setAccessibleName(close->toolTip());
  connect(close, &QToolButton::clicked, this, &QWidget::hide);
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(icon_);
  layout->addWidget(text_, 1);
  layout->addLayout(buttons_);
  layout->addWidget(close);
  hide();
}

void MessageBar::ShowProblem(const QString& text) { Show(text, true); }

void MessageBar::ShowNote(const QString& text) { Show(text, false); }

void MessageBar::Ask(const QString& text, const std::vector<Choice>& choices) {
  hide();
  Show(text, false);
  question_ = text;
  ReplaceChoices(choices);
}

QString MessageBar::Text() const { return isHidden() ? QString() : text_->text(); }

void MessageBar::Show(const QString& text, bool isProblem) {
  if (isHidden()) {
    question_.clear();
    ReplaceChoices({});
  }
  const auto icon = isProblem ? QStyle::SP_MessageBoxWarning : QStyle::SP_MessageBoxInformation;
  const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
  icon_->setPixmap(style()->standardIcon(icon).pixmap(size));
  text_->setText(question_.isEmpty() ? text : text + '\n' + question_);
  show();
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void MessageBar::ReplaceChoices(const std::vector<Choice>& choices) {
  while (QLayoutItem* item = buttons_->takeAt(0)) {
    item->widget()->deleteLater();
    delete item;
  }
  for (const Choice& choice : choices) {
    auto* button = new QPushButton(choice.first, this);
    connect(button, &QPushButton::clicked, this, [this, act = choice.second] {
      hide();
      act();
    });
    buttons_->addWidget(button);
  }
}

}  // namespace vitrell::panel
