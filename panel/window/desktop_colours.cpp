// The settings portal of desktops, and a dark palette.
#include "panel/window/desktop_colours.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace vitrell::panel {
namespace {

constexpr const char* kService = "org.freedesktop.portal.Desktop";
constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kInterface = "org.freedesktop.portal.Settings";
constexpr const char* kArea = "org.freedesktop.appearance";
constexpr const char* kKey = "color-scheme";
constexpr unsigned kDark = 1;

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::Text).lightness();
}

QPalette DarkPalette() {
  const QColor text(235, 235, 235);
  const QColor faint(130, 130, 130);
  QPalette palette(QColor(62, 62, 62), QColor(46, 46, 46));
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                         QPalette::ToolTipText, QPalette::BrightText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, faint);
  }
  palette.setColor(QPalette::Base, QColor(34, 34, 34));
  palette.setColor(QPalette::AlternateBase, QColor(42, 42, 42));
  palette.setColor(QPalette::ToolTipBase, QColor(66, 66, 58));
  palette.setColor(QPalette::PlaceholderText, faint);
  palette.setColor(QPalette::Highlight, QColor(52, 116, 180));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, QColor(110, 180, 255));
  return palette;
}

// A number, wrapped once or twice, as portals do.
unsigned Unwrapped(QVariant value) {
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value.toUInt();
}

}  // namespace

DesktopColours::DesktopColours(QObject* parent)
    : QObject(parent), usual_(QApplication::palette()) {}

void DesktopColours::Follow() {
  // Looking for a bus that nobody told of may start one.
  if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) return;
  QDBusConnection bus = QDBusConnection::sessionBus();
  bus.connect(kService, kPath, kInterface, "SettingChanged", this,
              SLOT(SettingChanged(QString, QString, QDBusVariant)));
  QDBusMessage question = QDBusMessage::createMethodCall(kService, kPath, kInterface, "Read");
  question << QString(kArea) << QString(kKey);
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (!reply.isError()) Take(Unwrapped(reply.value().variant()));
    watcher->deleteLater();
  });
}

void DesktopColours::SettingChanged(const QString& area, const QString& key,
                                    const QDBusVariant& value) {
  if (area == kArea && key == kKey) Take(Unwrapped(value.variant()));
}

void DesktopColours::Take(unsigned scheme) {
  const bool wantsDark = scheme == kDark;
  QApplication::setPalette(wantsDark && !IsDark(usual_) ? DarkPalette() : usual_);
}

}  // namespace vitrell::panel
