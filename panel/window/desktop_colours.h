// Dark or light, as the desktop has it.
#ifndef VITRELL_PANEL_WINDOW_DESKTOP_COLOURS_H_
#define VITRELL_PANEL_WINDOW_DESKTOP_COLOURS_H_

#include <QDBusVariant>
#include <QObject>
#include <QPalette>
#include <QString>

namespace vitrell::panel {

// Some desktops tell Qt their colours; the others tell, through their portal, whether they are
// dark. Both are followed, also when they change while the program runs.
class DesktopColours : public QObject {
  Q_OBJECT

 public:
  explicit DesktopColours(QObject* parent = nullptr);

  // Asks the portal; nothing happens where there is none.
  void Follow();
  // The portal's number: 1 dark, 2 light, 0 no wish.
  void Take(unsigned scheme);

 private Q_SLOTS:
  void SettingChanged(const QString& area, const QString& key, const QDBusVariant& value);

 private:
  QPalette usual_;  // what the desktop told Qt
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WINDOW_DESKTOP_COLOURS_H_
