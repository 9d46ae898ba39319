// What an effect did wrong, for its user.
#ifndef VITRELL_PANEL_MODEL_COMPLAINT_TEXT_H_
#define VITRELL_PANEL_MODEL_COMPLAINT_TEXT_H_

#include <QString>
#include <string>
#include <vector>

namespace vitrell::panel {

// The host's complaints as whole sentences; empty for none.
inline QString ComplaintText(const std::vector<std::string>& complaints) {
  QString text;
  for (const std::string& complaint : complaints) {
    text += QString("The effect misbehaved: %1. ").arg(QString::fromStdString(complaint));
  }
  return text.trimmed();
}

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_COMPLAINT_TEXT_H_
