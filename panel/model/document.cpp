// Changes, their undoing, and asking the effect's panel procedure.
#include "panel/model/document.h"

#include <utility>

#include "look/failure.h"
#include "look/preset.h"
#include "look/value_text.h"
#include "panel/model/change_command.h"
#include "panel/model/complaint_text.h"

namespace vitrell::panel {
namespace {

std::string CutMessage(const std::string& name) {
  return name + " would leave its range on a picture of this width and got the end of it.";
}

std::vector<int> AllControls(const look::Panel& panel) {
  std::vector<int> controls;
  for (std::size_t i = 0; i < panel.controls.size(); ++i) controls.push_back(static_cast<int>(i));
  return controls;
}

}  // namespace

Document::Document(std::shared_ptr<const headless::EffectModule> module, QObject* parent)
    : QObject(parent),
      host_(std::make_unique<headless::EffectHost>(std::move(module))),
      panel_(look::MakePanel(host_->Parameters())),
      settings_(panel_),
      greyed_(panel_.controls.size()) {
  connect(this, &Document::ComplainedEarly, this, &Document::Complained, Qt::QueuedConnection);
  AskPanelProcedure({});
  isMade_ = true;
}

void Document::Complain(const QString& message) {
  if (message.isEmpty()) return;
  isMade_ ? Q_EMIT Complained(message) : Q_EMIT ComplainedEarly(message);
}

const look::Control& Document::ControlAt(int control) const {
  return panel_.controls.at(static_cast<std::size_t>(control));
}

const look::Value& Document::ValueOf(int control) const {
  return settings_.ValueOf(ControlAt(control));
}

const look::Keys* Document::KeysOf(int control) const {
  return settings_.KeysOf(ControlAt(control));
}

ControlState Document::StateOf(int control) const {
  const look::Keys* const keys = KeysOf(control);
  return {ValueOf(control), keys == nullptr ? look::Keys() : *keys};
}

bool Document::DiffersFromDefault(int control) const {
  return KeysOf(control) != nullptr || ValueOf(control) != ControlAt(control).defaultValue;
}

void Document::SetPictureSize(int width, int height) {
  width_ = width;
  height_ = height;
  hasPicture_ = true;
}

void Document::SetValue(int control, const look::Value& value, EditPhase phase) {
  Push({{control, StateOf(control), {value, {}}}},
       tr("Change of %1").arg(QString::fromStdString(ControlAt(control).label)), phase);
}

void Document::SetKeys(int control, const look::Keys& keys, EditPhase phase) {
  if (keys.empty()) return SetValue(control, ValueOf(control), phase);
  look::CheckKeys(ControlAt(control), keys);
  Push({{control, StateOf(control), {keys.front().value, keys}}},
       tr("Keys of %1").arg(QString::fromStdString(ControlAt(control).label)), phase);
}

void Document::Reset(int control) {
  ResetControls({control}, tr("Reset of %1").arg(QString::fromStdString(ControlAt(control).label)));
}

void Document::ResetGroup(std::size_t row) {
  const look::PanelRow& title = panel_.rows.at(row);
  std::vector<int> controls;
  for (std::size_t i = row + 1; i < panel_.rows.size() && panel_.rows[i].depth > title.depth; ++i) {
    if (!panel_.rows[i].isGroup) controls.push_back(static_cast<int>(panel_.rows[i].control));
  }
  ResetControls(controls, tr("Reset of %1").arg(QString::fromStdString(title.title)));
}

void Document::ResetAll() { ResetControls(AllControls(panel_), tr("Reset of all controls")); }

void Document::ResetControls(const std::vector<int>& controls, const QString& text) {
  std::vector<ControlChange> changes;
  changes.reserve(controls.size());
  for (const int control : controls) {
    changes.push_back({control, StateOf(control), {ControlAt(control).defaultValue, {}}});
  }
  Push(std::move(changes), text, EditPhase::kDone);
}

look::Settings Document::ReadPreset(const std::filesystem::path& file,
                                    std::vector<std::string>& notes) const {
  look::Settings loaded(panel_);
  look::LoadPreset(file, loaded);
  if (hasPicture_) {
    for (const std::string& name : loaded.FitTo(width_)) notes.push_back(CutMessage(name));
  }
  return loaded;
}

std::vector<std::string> Document::LoadPreset(const std::filesystem::path& file) {
  std::vector<std::string> notes;
  const look::Settings loaded = ReadPreset(file, notes);
  TakeSettings(loaded, tr("Loading of %1").arg(QString::fromStdString(file.stem().string())));
  undo_.setClean();
  presetFile_ = file;
  return notes;
}

void Document::TakeSettings(const look::Settings& settings, const QString& text) {
  std::vector<ControlChange> changes;
  for (const int control : AllControls(panel_)) {
    const look::Keys* const keys = settings.KeysOf(ControlAt(control));
    changes.push_back(
        {control,
         StateOf(control),
         {settings.ValueOf(ControlAt(control)), keys == nullptr ? look::Keys() : *keys}});
  }
  Push(std::move(changes), text, EditPhase::kDone);
}

std::vector<std::string> Document::SavePreset(const std::filesystem::path& file) {
  std::vector<std::string> notes = look::SavePreset(file, settings_, Width());
  presetFile_ = file;
  undo_.setClean();
  return notes;
}

void Document::WriteCopy(const std::filesystem::path& file) const {
  static_cast<void>(look::SavePreset(file, settings_, Width()));
}

std::string Document::TextOfCopy(const std::filesystem::path& file) const {
  return look::PresetText(file, settings_, Width());
}

void Document::TakeCopy(const std::filesystem::path& file) {
  std::vector<std::string> notes;
  TakeSettings(ReadPreset(file, notes), tr("Restoring"));
}

void Document::Push(std::vector<ControlChange> changes, const QString& text, EditPhase phase) {
  std::erase_if(changes, [](const ControlChange& change) { return change.before == change.after; });
  if (!changes.empty()) {
    undo_.push(std::make_unique<ChangeCommand>(*this, std::move(changes), text, drag_).release());
  }
  if (phase == EditPhase::kDone) ++drag_;
}

void Document::Restore(const std::vector<ControlChange>& changes, bool toNew) {
  std::vector<int> changed;
  for (const ControlChange& change : changes) {
    const ControlState& state = toNew ? change.after : change.before;
    const look::Control& control = ControlAt(change.control);
    if (state.keys.empty()) {
      settings_.SetValue(control, state.value);
    } else {
      settings_.SetKeys(control, state.keys);
    }
    changed.push_back(change.control);
  }
  AskPanelProcedure(changed);
  for (const int control : changed) Q_EMIT ValueChanged(control);
  Q_EMIT Changed();
}

void Document::AskPanelProcedure(const std::vector<int>& changed) {
  settings_.Apply(*host_, width_, height_);
  const auto error = changed.size() == 1 ? host_->UserChangedParam(ControlAt(changed.front()).index)
                                         : host_->UpdatePanel();
  if (error != 0) {
    Complain(tr("The effect could not update its panel: %1. What is greyed may be out of "
                "date; all values are kept.")
                 .arg(QString::fromStdString(headless::DescribeError(error))));
  }
  Complain(ComplaintText(host_->Complaints()));
  host_->ClearComplaints();
  std::vector<bool> greyed;
  for (const look::Control& control : panel_.controls) {
    greyed.push_back(host_->Parameters().at(static_cast<std::size_t>(control.index)).Greyed());
  }
  if (greyed == greyed_) return;
  greyed_ = std::move(greyed);
  Q_EMIT GreyedChanged();
}

}  // namespace vitrell::panel
