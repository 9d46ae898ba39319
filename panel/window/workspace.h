// What is edited, what it is edited with, and what it looks like, tied together.
#ifndef VITRELL_PANEL_WINDOW_WORKSPACE_H_
#define VITRELL_PANEL_WINDOW_WORKSPACE_H_

#include <QObject>
#include <QString>
#include <cstdint>
#include <memory>

#include "panel/model/document.h"
#include "panel/model/renderer.h"
#include "panel/time/time_line.h"
#include "panel/view/handles.h"
#include "panel/view/picture_view.h"
#include "panel/widgets/control_panel.h"

namespace vitrell::panel {

// Every change of the document is shown at once, and rendered aside.
class Workspace : public QObject {
  Q_OBJECT

 public:
  explicit Workspace(const std::shared_ptr<const headless::EffectModule>& module,
                     QObject* parent = nullptr);
  ~Workspace() override;
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  Document& Edited() { return document_; }
  // These become children of the window that they are put into, which must end before this object.
  ControlPanel& Controls() { return *controls_; }
  PictureView& View() { return *view_; }
  TimeLine& Time() { return *time_; }

  void Show(std::shared_ptr<Source> source, std::shared_ptr<const SourceFrame> first);
  // Null until something is shown.
  const std::shared_ptr<Source>& Shown() const { return source_; }
  const std::shared_ptr<const SourceFrame>& ShownFrame() const { return frame_; }
  // The frame of this number, as keys count, or the one before it where there is none.
  void ShowFrame(int number, EditPhase phase);
  double FrameNumber() const;
  // Counts from 0.
  std::int64_t FrameIndex() const { return index_; }
  look::TimeBase Times() const;
  // Standing still, at the shown frame.
  look::Settings ShownSettings() const;

 Q_SIGNALS:
  // Whole sentences: what went wrong and what to do.
  void Complained(const QString& message);
  void Answered(const vitrell::panel::RenderAnswer& answer);

 private:
  void ConnectDocument();
  void ConnectEdits();
  void ConnectTime();
  void Edit(int control, const look::Value& value, EditPhase phase);
  // Empty keys: the control stands still from now on.
  void EditKeys(int control, const look::Keys& keys, EditPhase phase);
  void ToggleKeys(int control);
  void ShowControl(int control);
  void ShowControlOf(int control, const look::Settings& shown);
  void ShowAll();
  void ShowHandles();
  void Render();
  void Take(const RenderAnswer& answer);

  Document document_;
  ControlPanel* controls_;
  Handles handles_;
  PictureView* view_;
  TimeLine* time_;
  std::shared_ptr<Source> source_;
  std::shared_ptr<const SourceFrame> frame_;
  std::shared_ptr<const headless::WorldBuffer> result_;  // exact, of frame_
  std::int64_t index_ = 0;
  EditPhase phase_ = EditPhase::kDone;  // of the change that is being made
  std::uint64_t requested_ = 0;         // number of the newest request
  std::uint64_t firstOfSource_ = 0;     // number of the first one for this source
  qint64 before_ = 0;                   // key of the image that the view shows without the effect
  Renderer renderer_;                   // ended first: it uses the document's panel
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WINDOW_WORKSPACE_H_
