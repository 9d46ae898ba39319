// Signals from one to the other.
#include "panel/window/workspace.h"

#include <utility>

#include "look/failure.h"
#include "panel/model/probe.h"
#include "panel/time/key_edits.h"

namespace vitrell::panel {

Workspace::Workspace(const std::shared_ptr<const headless::EffectModule>& module, QObject* parent)
    : QObject(parent),
      document_(module),
      controls_(new ControlPanel(document_.Panel())),
      handles_(document_.Panel()),
      view_(new PictureView),
      time_(new TimeLine(document_.Panel())),
      renderer_(module) {
  view_->SetHandles(&handles_);
  view_->SetProbe([this](int x, int y) {
    return frame_ == nullptr ? QString() : ProbeText(*frame_, result_.get(), x, y);
  });
  ConnectDocument();
  ConnectEdits();
  ConnectTime();
  ShowAll();
}

Workspace::~Workspace() = default;

void Workspace::ConnectDocument() {
  connect(&document_, &Document::ValueChanged, this, &Workspace::ShowControl);
  connect(&document_, &Document::GreyedChanged, this, [this] {
    controls_->ShowGreyed(document_.Greyed());
    ShowHandles();
  });
  connect(&document_, &Document::Changed, this, [this] {
    ShowHandles();
    Render();
  });
  connect(&document_, &Document::Complained, this, &Workspace::Complained);
  connect(&renderer_, &Renderer::Answered, this, &Workspace::Take);
}

void Workspace::ConnectEdits() {
  connect(controls_, &ControlPanel::Edited, this, &Workspace::Edit);
  connect(controls_, &ControlPanel::Refused, this, &Workspace::Complained);
  connect(controls_, &ControlPanel::ResetControl, &document_, &Document::Reset);
  connect(controls_, &ControlPanel::ResetGroup, &document_, &Document::ResetGroup);
  connect(controls_, &ControlPanel::ResetAll, &document_, &Document::ResetAll);
  connect(controls_, &ControlPanel::PickPoint, view_, &PictureView::PickPoint);
  connect(controls_, &ControlPanel::StopwatchToggled, this, &Workspace::ToggleKeys);
  connect(&handles_, &Handles::Edited, this, &Workspace::Edit);
  connect(view_, &PictureView::MaskWanted, this, &Workspace::Render);
}

void Workspace::ConnectTime() {
  connect(time_, &TimeLine::FrameChosen, this, &Workspace::ShowFrame);
  connect(time_, &TimeLine::KeysEdited, this, &Workspace::EditKeys);
  connect(controls_, &ControlPanel::Chosen, time_, &TimeLine::Choose);
}

void Workspace::Show(std::shared_ptr<Source> source, std::shared_ptr<const SourceFrame> first) {
  source_ = std::move(source);
  frame_ = std::move(first);
  result_ = nullptr;
  index_ = 0;
  const QSize size(frame_->Width(), frame_->Height());
  document_.SetPictureSize(size.width(), size.height());
  controls_->SetPictureSize(size);
  handles_.SetPictureSize(size);
  time_->SetClip(Times());
  time_->SetRange(static_cast<int>(source_->NumberOf(0)), static_cast<int>(Times().length) - 1);
  time_->ShowFrame(static_cast<int>(FrameNumber()));
  ShowAll();
  Render();
  firstOfSource_ = requested_;
}

void Workspace::ShowFrame(int number, EditPhase phase) {
  if (source_ == nullptr) return;
  std::int64_t index = 0;
  while (index + 1 < source_->FrameCount() && source_->NumberOf(index + 1) <= number) ++index;
  const bool isOther = index != index_;
  index_ = index;
  time_->ShowFrame(number);
  if (isOther) ShowAll();
  phase_ = phase;
  Render();
  phase_ = EditPhase::kDone;
}

double Workspace::FrameNumber() const {
  return source_ == nullptr ? 0 : static_cast<double>(source_->NumberOf(index_));
}

look::TimeBase Workspace::Times() const {
  return source_ == nullptr ? look::TimeBase() : source_->Times();
}

look::Settings Workspace::ShownSettings() const {
  if (!document_.Settings().Moves()) return document_.Settings();
  return document_.Settings().At(FrameNumber(), Times());
}

void Workspace::Edit(int control, const look::Value& value, EditPhase phase) {
  const look::Control& edited = document_.Panel().controls.at(static_cast<std::size_t>(control));
  if (const look::Keys* keys = document_.KeysOf(control)) {
    EditKeys(control, KeysWithValue(edited, *keys, FrameNumber(), value, Times()), phase);
    return;
  }
  const std::uint64_t before = requested_;
  phase_ = phase;
  document_.SetValue(control, value, phase);
  // A drag often ends without a change, but now the exact frame is wanted.
  if (phase == EditPhase::kDone && requested_ == before) Render();
  phase_ = EditPhase::kDone;
}

void Workspace::EditKeys(int control, const look::Keys& keys, EditPhase phase) {
  const look::Control& edited = document_.Panel().controls.at(static_cast<std::size_t>(control));
  phase_ = phase;
  try {
    if (keys.empty()) {
      document_.SetValue(control, ShownSettings().ValueOf(edited), phase);
    } else {
      document_.SetKeys(control, keys, phase);
    }
  } catch (const look::ValueError& error) {
    Q_EMIT Complained(QString::fromStdString(edited.label + ": " + error.what()));
    ShowControl(control);
  }
  phase_ = EditPhase::kDone;
}

void Workspace::ToggleKeys(int control) {
  const look::Control& toggled = document_.Panel().controls.at(static_cast<std::size_t>(control));
  const bool moves = document_.KeysOf(control) != nullptr;
  const look::Value shown = ShownSettings().ValueOf(toggled);
  EditKeys(control,
           moves ? look::Keys() : KeysWithValue(toggled, {}, FrameNumber(), shown, Times()),
           EditPhase::kDone);
}

void Workspace::ShowControl(int control) { ShowControlOf(control, ShownSettings()); }

void Workspace::ShowControlOf(int control, const look::Settings& shown) {
  const look::Control& changed = document_.Panel().controls.at(static_cast<std::size_t>(control));
  const look::Keys* const keys = document_.KeysOf(control);
  controls_->ShowValue(control, shown.ValueOf(changed), document_.DiffersFromDefault(control),
                       keys != nullptr);
  time_->ShowKeys(control, keys == nullptr ? look::Keys() : *keys);
}

void Workspace::ShowAll() {
  const look::Settings shown = ShownSettings();
  for (std::size_t i = 0; i < document_.Panel().controls.size(); ++i) {
    ShowControlOf(static_cast<int>(i), shown);
  }
  controls_->ShowGreyed(document_.Greyed());
  ShowHandles();
}

void Workspace::ShowHandles() { handles_.ShowValues(ShownSettings().Values(), document_.Greyed()); }

void Workspace::Render() {
  if (source_ == nullptr) return;
  requested_ = renderer_.Request({source_, index_, ShownSettings(), phase_, view_->WantsMask()});
}

void Workspace::Take(const RenderAnswer& answer) {
  if (answer.request < firstOfSource_) return;
  if (answer.frame != nullptr) {
    frame_ = answer.frame;
    result_ = answer.world;
    if (answer.before.cacheKey() != before_) view_->ShowBefore(answer.before);
    before_ = answer.before.cacheKey();
    handles_.SetLensPictureSize(answer.layerSize);
  }
  if (answer.image.isNull()) {
    view_->ShowError(answer.message);
  } else {
    view_->ShowResult(answer.image, answer.exact, answer.scale);
    view_->ShowMask(answer.mask);
    if (!answer.message.isEmpty()) Q_EMIT Complained(answer.message);
  }
  Q_EMIT Answered(answer);
}

}  // namespace vitrell::panel
