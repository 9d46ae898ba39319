// The workspace's parts as windows of their own, without a display.
#ifndef VITRELL_TESTS_PANEL_WORKSPACE_FIXTURE_H_
#define VITRELL_TESTS_PANEL_WORKSPACE_FIXTURE_H_

#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>
#include <memory>
#include <string>
#include <vector>

#include "look/animation_text.h"
#include "panel/hand.h"
#include "panel/random_look.h"
#include "panel/real_module.h"
#include "panel/test_picture.h"
#include "panel/time/key_tracks.h"
#include "panel/widgets/control_row.h"
#include "panel/widgets/scrub_field.h"
#include "panel/widgets/value_editor.h"
#include "panel/window/workspace.h"

namespace vitrell::panel {

// The parts stand in windows of their own, which end before the workspace.
class WorkspaceTest : public testing::Test {
 protected:
  ~WorkspaceTest() override {
    if (!work_) return;
    delete &work_->Controls();
    delete &work_->View();
    delete &work_->Time();
  }

  void Use(const std::shared_ptr<const headless::EffectModule>& module, int frames = 1) {
    module_ = module;
    work_ = std::make_unique<Workspace>(module);
    work_->Controls().resize(480, 900);
    work_->View().resize(320, 180);
    work_->Time().setFixedSize(kTrackLabelWidth + 2 * kTrackMargin + 500, 400);
    QObject::connect(work_.get(), &Workspace::Answered,
                     [this](const RenderAnswer& answer) { answer_ = answer; });
    QObject::connect(work_.get(), &Workspace::Complained, [this](const QString& message) {
      complaints_.push_back(message.toStdString());
    });
    source_ = std::make_shared<NoiseSource>(160, 90, false, frames);
    work_->Show(source_, source_->Read(0));
    ShowActive(work_->Controls());
  }

  // Only with a picture does the view know where a place of it is.
  void ShowView() {
    ShowActive(work_->View());
    ASSERT_TRUE(WaitUntil([this] { return answer_.exact; }));
  }

  Document& Edited() { return work_->Edited(); }
  int At(const char* name) { return PositionOf(Edited().Panel(), name); }
  const look::Control& Named(const char* name) { return *Edited().Panel().Find(name); }
  ControlRow* Row(const char* name) { return work_->Controls().findChild<ControlRow*>(name); }
  template <typename Widget>
  Widget* In(const char* name) {
    work_->Controls().Choose(At(name));
    return Row(name)->Editor()->findChild<Widget*>();
  }
  void Type(const char* name, const QString& text) {
    auto* const field = In<ScrubField>(name);
    field->selectAll();
    QTest::keyClicks(field, text);
    QTest::keyClick(field, Qt::Key_Return);
  }
  std::string KeysOf(const char* name) {
    const look::Keys* const keys = Edited().KeysOf(At(name));
    return keys == nullptr ? "none" : look::FormatKeys(Named(name), *keys);
  }
  // What the view's labels say.
  std::vector<std::string> Signs() {
    std::vector<std::string> texts;
    for (const QLabel* label : work_->View().findChildren<QLabel*>()) {
      if (!label->isHidden()) texts.push_back(label->text().toStdString());
    }
    return texts;
  }

  std::shared_ptr<const headless::EffectModule> module_;
  std::unique_ptr<Workspace> work_;
  std::shared_ptr<Source> source_;
  RenderAnswer answer_;
  std::vector<std::string> complaints_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_TESTS_PANEL_WORKSPACE_FIXTURE_H_
