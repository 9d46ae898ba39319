// Rows and groups of the whole panel.
#include "panel/widgets/control_panel.h"

#include <QApplication>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "panel/widgets/control_row.h"
#include "panel/widgets/group_box.h"
#include "panel/widgets/icons.h"
#include "panel/widgets/value_editor.h"

namespace vitrell::panel {
namespace {

constexpr int kGap = 8;  // behind the longest name

// Names are as wide as the longest one in bold, less what their groups indent them, so that editors
// stand in one column.
int NameWidth(const look::Panel& panel, const QFont& font) {
  QFont bold = font;
  bold.setBold(true);
  const QFontMetrics metrics(bold);
  int width = 0;
  for (const look::PanelRow& row : panel.rows) {
    if (row.isGroup) continue;
    const QString label = QString::fromStdString(panel.controls[row.control].label);
    width = std::max(width, metrics.horizontalAdvance(label) + row.depth * kGroupIndent);
  }
  return width + kGap;
}

}  // namespace

ControlPanel::ControlPanel(const look::Panel& panel, QWidget* parent)
    : QScrollArea(parent),
      panel_(panel),
      rows_(panel.controls.size(), nullptr),
      around_(panel.controls.size()) {
  auto* const content = new QWidget;
  auto* const layout = new QVBoxLayout(content);
  layout->setSpacing(2);
  AddTitle(layout);
  for (std::size_t row = 0; row < panel.rows.size(); ++row) {
    while (!path_.empty() && path_.back().depth >= panel.rows[row].depth) path_.pop_back();
    QVBoxLayout* const place = path_.empty() ? layout : path_.back().box->Body();
    if (panel.rows[row].isGroup) {
      AddGroup(row, place);
    } else {
      AddControl(row, place);
    }
  }
  layout->addStretch(1);
  setWidget(content);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setAccessibleName(tr("Controls"));
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget* /*old*/, QWidget* now) {
    for (std::size_t i = 0; now != nullptr && i < rows_.size(); ++i) {
      if (rows_[i]->isAncestorOf(now)) Q_EMIT Chosen(static_cast<int>(i));
    }
  });
}

void ControlPanel::AddTitle(QVBoxLayout* layout) {
  auto* const title = new QLabel(tr("Controls"));
  title->installEventFilter(this);
  title->setToolTip(tr("Double click: all controls back to their defaults"));
  auto* const reset = new QToolButton;
  reset->setText(tr("Reset all"));
  reset->setFocusPolicy(Qt::StrongFocus);
  reset->setToolTip(tr("All controls back to their defaults"));
  auto* const header = new QHBoxLayout;
  header->addWidget(title, 1);
  header->addWidget(reset);
  layout->addLayout(header);
  title_ = title;
  connect(reset, &QToolButton::clicked, this, &ControlPanel::ResetAll);
}

void ControlPanel::AddGroup(std::size_t row, QVBoxLayout* layout) {
  const look::PanelRow& description = panel_.rows[row];
  auto* const box = new GroupBox(QString::fromStdString(description.title), !description.collapsed,
                                 layout->parentWidget());
  layout->addWidget(box);
  connect(box, &GroupBox::Reset, this, [this, row] { Q_EMIT ResetGroup(row); });
  path_.push_back({description.depth, box});
  groups_.push_back(box);
}

void ControlPanel::AddControl(std::size_t row, QVBoxLayout* layout) {
  const look::PanelRow& description = panel_.rows[row];
  const QString group = path_.empty() ? QString() : path_.back().box->Title();
  const int nameWidth = NameWidth(panel_, font()) - description.depth * kGroupIndent;
  auto* const added = new ControlRow(panel_.controls[description.control], group, nameWidth,
                                     layout->parentWidget());
  layout->addWidget(added);
  rows_[description.control] = added;
  for (const OpenGroup& open : path_) around_[description.control].push_back(open.box);
  const int control = static_cast<int>(description.control);
  connect(added, &ControlRow::Edited, this,
          [this, control](const look::Value& value, EditPhase phase) {
            Q_EMIT Edited(control, value, phase);
          });
  connect(added, &ControlRow::Refused, this, &ControlPanel::Refused);
  connect(added, &ControlRow::Reset, this, [this, control] { Q_EMIT ResetControl(control); });
  connect(added, &ControlRow::PickPoint, this, [this, control] { Q_EMIT PickPoint(control); });
  connect(added, &ControlRow::StopwatchToggled, this,
          [this, control] { Q_EMIT StopwatchToggled(control); });
}

void ControlPanel::ShowValue(int control, const look::Value& value, bool differsFromDefault,
                             bool moves) {
  ControlRow* const row = rows_.at(static_cast<std::size_t>(control));
  const bool differed = row->DiffersFromDefault();
  row->ShowValue(value, differsFromDefault, moves);
  if (differed != differsFromDefault) MarkGroups();
}

void ControlPanel::MarkGroups() {
  for (GroupBox* const group : groups_) {
    bool changed = false;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      const auto& around = around_[i];
      changed = changed || (rows_[i]->DiffersFromDefault() &&
                            std::find(around.begin(), around.end(), group) != around.end());
    }
    group->MarkChanged(changed);
  }
}

void ControlPanel::ShowGreyed(const std::vector<bool>& greyed) {
  for (std::size_t i = 0; i < rows_.size(); ++i) rows_[i]->ShowGreyed(greyed.at(i));
}

void ControlPanel::SetPictureSize(const QSize& size) {
  for (ControlRow* const row : rows_) row->SetPictureSize(size);
}

void ControlPanel::Choose(int control) {
  const auto position = static_cast<std::size_t>(control);
  for (GroupBox* const group : around_.at(position)) group->Open(true);
  rows_.at(position)->Editor()->setFocus();
  ensureWidgetVisible(rows_[position]);
}

QSize ControlPanel::minimumSizeHint() const {
  const int width = widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width() +
                    2 * frameWidth();
  return {width, QScrollArea::minimumSizeHint().height()};
}

QSize ControlPanel::sizeHint() const {
  return {minimumSizeHint().width(), widget()->sizeHint().height()};
}

bool ControlPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == title_ && event->type() == QEvent::MouseButtonDblClick) {
    Q_EMIT ResetAll();
    return true;
  }
  return QScrollArea::eventFilter(watched, event);
}

}  // namespace vitrell::panel
