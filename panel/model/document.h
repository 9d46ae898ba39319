// What is being edited: the settings of all controls, with undo, and which controls are greyed.
#ifndef VITRELL_PANEL_MODEL_DOCUMENT_H_
#define VITRELL_PANEL_MODEL_DOCUMENT_H_

#include <QObject>
#include <QString>
#include <QUndoStack>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "headless/effect_host.h"
#include "look/settings.h"
#include "panel/edit_phase.h"
#include "panel/model/control_state.h"

namespace vitrell::panel {

// Controls are named by their position in look::Panel::controls. Used by one thread.
class Document : public QObject {
  Q_OBJECT

 public:
  // Throws headless::HostError if the effect cannot be set up.
  explicit Document(std::shared_ptr<const headless::EffectModule> module,
                    QObject* parent = nullptr);

  const look::Panel& Panel() const { return panel_; }
  const look::Settings& Settings() const { return settings_; }
  const look::Value& ValueOf(int control) const;
  const look::Keys* KeysOf(int control) const;
  bool DiffersFromDefault(int control) const;
  // For every control, as the effect's panel procedure left it after the last change.
  const std::vector<bool>& Greyed() const { return greyed_; }

  // Of the picture that is looked at.
  void SetPictureSize(int width, int height);

  // Each is one undo step; all calls of one drag, up to the first with kDone, are one together.
  void SetValue(int control, const look::Value& value, EditPhase phase);
  void SetKeys(int control, const look::Keys& keys, EditPhase phase);
  void Reset(int control);
  // `row` is the group's title in Panel::rows; groups inside it are reset, too.
  void ResetGroup(std::size_t row);
  void ResetAll();
  // What the file does not name gets its default. Lengths in pixels, those too, are scaled to the
  // picture's width, if the preset tells the width that it was made for. Returns what the user
  // should know, in whole sentences. Throws media::Failure, and then nothing has changed.
  std::vector<std::string> LoadPreset(const std::filesystem::path& file);
  // One undo step, too.
  void TakeSettings(const look::Settings& settings, const QString& text);
  // Returns what a replaced file loses, in whole sentences. Throws media::Failure.
  std::vector<std::string> SavePreset(const std::filesystem::path& file);

  // The same without becoming the preset that is being edited: for what the program keeps for
  // itself. What is taken from a copy counts as a change.
  void WriteCopy(const std::filesystem::path& file) const;
  // What WriteCopy writes.
  std::string TextOfCopy(const std::filesystem::path& file) const;
  void TakeCopy(const std::filesystem::path& file);

  QUndoStack& Undo() { return undo_; }
  // Whether anything has changed since a preset was loaded or saved, or since the start.
  bool IsChanged() const { return !undo_.isClean(); }
  // The preset that was loaded or saved last; empty: none.
  const std::filesystem::path& PresetFile() const { return presetFile_; }

 Q_SIGNALS:
  void ValueChanged(int control);
  // After all values of one step.
  void Changed();
  void GreyedChanged();
  // The effect's panel procedure failed, or did what an effect must not; whole sentences. What is
  // wrong from the start comes once events are handled, when somebody can listen.
  void Complained(const QString& message);
  // Of the constructor, for itself: becomes Complained.
  void ComplainedEarly(const QString& message);

 private:
  friend class ChangeCommand;

  const look::Control& ControlAt(int control) const;
  // The file's settings, scaled to the picture's width.
  look::Settings ReadPreset(const std::filesystem::path& file,
                            std::vector<std::string>& notes) const;
  double Width() const { return hasPicture_ ? width_ : 0; }
  ControlState StateOf(int control) const;
  // One undo step, unless nothing differs.
  void Push(std::vector<ControlChange> changes, const QString& text, EditPhase phase);
  void ResetControls(const std::vector<int>& controls, const QString& text);
  // What the undo steps do.
  void Restore(const std::vector<ControlChange>& changes, bool toNew);
  void AskPanelProcedure(const std::vector<int>& changed);
  void Complain(const QString& message);

  std::unique_ptr<headless::EffectHost> host_;
  look::Panel panel_;
  look::Settings settings_;
  std::vector<bool> greyed_;
  bool hasPicture_ = false;
  int width_ = 1920;
  int height_ = 1080;
  QUndoStack undo_;
  int drag_ = 0;  // number of the drag that goes on or comes next
  std::filesystem::path presetFile_;
  bool isMade_ = false;  // the constructor has ended
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_DOCUMENT_H_
