// A title with an arrow above an indented body.
#include "panel/widgets/group_box.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QToolButton>
#include <QVBoxLayout>

#include "panel/widgets/icons.h"

namespace vitrell::panel {
namespace {}  // namespace

GroupBox::GroupBox(const QString& title, bool open, QWidget* parent)
    : QWidget(parent),
      title_(new QToolButton(this)),
      reset_(new QToolButton(this)),
      body_(new QWidget(this)),
      bodyLayout_(new QVBoxLayout(body_)) {
  title_->setText(title);
  title_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  title_->setAutoRaise(true);
  title_->setCheckable(true);
  title_->setFocusPolicy(Qt::StrongFocus);
  title_->setAccessibleName(tr("group %1").arg(title));
  title_->setToolTip(tr("Double click: the whole group back to its defaults"));
  title_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  title_->installEventFilter(this);
  reset_->setIcon(ResetIcon());
  reset_->setAutoRaise(true);
  reset_->setFocusPolicy(Qt::StrongFocus);
  reset_->setAccessibleName(tr("group %1, reset").arg(title));
  reset_->setToolTip(tr("The whole group back to its defaults"));
  reset_->hide();
  bodyLayout_->setContentsMargins(kGroupIndent, 0, 0, 0);
  bodyLayout_->setSpacing(2);

  auto* const header = new QHBoxLayout;
  header->addWidget(title_, 1);
  header->addWidget(reset_);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addLayout(header);
  layout->addWidget(body_);

  connect(title_, &QToolButton::toggled, this, &GroupBox::Open);
  connect(reset_, &QToolButton::clicked, this, &GroupBox::Reset);
  Open(open);
}

QString GroupBox::Title() const { return title_->text(); }

bool GroupBox::IsOpen() const { return title_->isChecked(); }

void GroupBox::Open(bool open) {
  title_->setChecked(open);
  title_->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
  body_->setVisible(open);
}

void GroupBox::MarkChanged(bool changed) {
  QFont font = title_->font();
  font.setBold(changed);
  title_->setFont(font);
  if (!changed && reset_->hasFocus()) title_->setFocus();
  reset_->setVisible(changed);
}

// The two clicks of a double click open and close the group again.
bool GroupBox::eventFilter(QObject* watched, QEvent* event) {
  if (watched == title_ && event->type() == QEvent::MouseButtonDblClick) Q_EMIT Reset();
  return QWidget::eventFilter(watched, event);
}

}  // namespace vitrell::panel
