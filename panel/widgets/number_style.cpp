// Numbers, angles and halves of positions as text.
#include "panel/widgets/number_style.h"

#include <algorithm>
#include <cmath>

#include "look/failure.h"
#include "look/value_text.h"

namespace vitrell::panel {
namespace {

constexpr double kFullTurn = 360;
constexpr double kDecimals = 1e4;
constexpr double kAllDigits = 1e9;  // from here on a double holds no four decimals more

std::string Trimmed(const QString& text, const QString& unit) {
  QString number = text.trimmed();
  if (!unit.isEmpty() && number.endsWith(unit, Qt::CaseInsensitive)) number.chop(unit.size());
  return number.trimmed().toStdString();
}

double ParsedNumber(const look::Control& control, const QString& text, const QString& unit) {
  return std::get<double>(look::ParseValue(control, Trimmed(text, unit)));
}

double ParsedAngle(const look::Control& control, const QString& text) {
  const qsizetype cross = text.indexOf('x', 0, Qt::CaseInsensitive);
  if (cross < 0) return ParsedNumber(control, text, QStringLiteral("°"));
  const double turns = ParsedNumber(control, text.left(cross), {});
  const QString rest = text.mid(cross + 1).trimmed();
  // "-1x 45" turns on in the direction of its sign.
  const double degrees = rest.isEmpty() ? 0 : ParsedNumber(control, rest, QStringLiteral("°"));
  const bool isSigned = rest.startsWith('+') || rest.startsWith('-');
  const double sign = !isSigned && text.trimmed().startsWith('-') ? -1 : 1;
  return look::CheckedNumber(control, turns * kFullTurn + sign * degrees);
}

// The number as ParseValue checks it, so that messages are the same everywhere.
look::Coordinate ParsedCoordinate(const look::Control& control, const std::string& text) {
  return std::get<look::PointValue>(look::ParseValue(control, text + ",0")).x;
}

}  // namespace

double StepFor(double range) {
  if (!(range > 0)) return 1;
  return std::pow(10.0, std::floor(std::log10(range / 100 * (1 + 1e-12))));
}

double OnGrid(double number, double step) {
  // Both branches divide or multiply by a whole power of ten, which is exact.
  const double fine = std::round(10 / step);
  if (fine >= 1) return std::round(number * fine) / fine;
  const double coarse = std::round(step / 10);
  return std::round(number / coarse) * coarse;
}

QString ShortNumber(double number) {
  const double rounded =
      std::abs(number) < kAllDigits ? std::round(number * kDecimals) / kDecimals : number;
  return QString::fromStdString(look::FormatNumber(rounded));
}

QString FormatAngle(double degrees) {
  const double turns = std::trunc(degrees / kFullTurn);
  QString rest = ShortNumber(degrees - turns * kFullTurn) + QStringLiteral("°");
  if (turns == 0) return rest;
  const QString sign = rest.startsWith('-') ? QString() : QStringLiteral("+");
  return ShortNumber(turns) + QStringLiteral("x ") + sign + rest;
}

NumberStyle StyleOf(const look::Control& control) {
  NumberStyle style;
  if (control.kind == look::ControlKind::kAngle) {
    style.minimum = -look::kFixedLimit;
    style.maximum = look::kFixedLimit;
    style.format = FormatAngle;
    style.parse = [control](const QString& text) { return ParsedAngle(control, text); };
    return style;
  }
  style.minimum = control.minimum;
  style.maximum = control.maximum;
  style.step = StepFor(control.sliderMaximum - control.sliderMinimum);
  const QString unit = control.percent  ? QStringLiteral("%")
                       : control.pixels ? QStringLiteral("px")
                                        : QString();
  style.format = [unit](double number) {
    return unit.isEmpty() ? ShortNumber(number) : ShortNumber(number) + ' ' + unit;
  };
  style.parse = [control, unit](const QString& text) { return ParsedNumber(control, text, unit); };
  return style;
}

NumberStyle CoordinateStyle(const look::Control& control, bool percent, double pictureSide) {
  NumberStyle style;
  style.minimum = -look::kFixedLimit;
  style.maximum = look::kFixedLimit;
  style.step = percent ? 0.1 : 1;
  style.format = [percent](double number) {
    return ShortNumber(number) + (percent ? QStringLiteral(" %") : QStringLiteral(" px"));
  };
  style.parse = [control, percent, pictureSide](const QString& text) {
    const bool inPixels = text.trimmed().endsWith(QStringLiteral("px"), Qt::CaseInsensitive);
    look::Coordinate read = ParsedCoordinate(control, Trimmed(text, QStringLiteral("px")));
    const bool inPercent = read.percent;
    const bool isOther = percent ? inPixels : inPercent;
    if (isOther && !(pictureSide > 0)) {
      throw look::ValueError("Percent and pixels are converted once a picture is open.");
    }
    if (isOther) read.value *= percent ? 100 / pictureSide : pictureSide / 100;
    return std::clamp(read.value, -look::kFixedLimit, look::kFixedLimit);
  };
  return style;
}

}  // namespace vitrell::panel
