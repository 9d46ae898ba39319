// The curves of values that move, as a drawing.
#include "look/curve_plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "look/value_text.h"

namespace vitrell::look {
namespace {

constexpr double kWidth = 640;
constexpr double kHeight = 120;
constexpr double kLeft = 70;
constexpr double kRight = 20;
constexpr double kTop = 30;
constexpr double kBottom = 30;
constexpr double kChart = kTop + kHeight + kBottom;
constexpr int kSteps = 640;

using Line = std::vector<double>;

std::array<double, 3> ComponentsOf(const Value& value, std::size_t* count) {
  *count = 1;
  if (const auto* number = std::get_if<double>(&value)) return {*number};
  if (const auto* on = std::get_if<bool>(&value)) return {*on ? 1.0 : 0.0};
  if (const auto* choice = std::get_if<ChoiceValue>(&value)) {
    return {static_cast<double>(choice->number)};
  }
  if (const auto* point = std::get_if<PointValue>(&value)) {
    *count = 2;
    return {point->x.value, point->y.value};
  }
  const auto* colour = std::get_if<ColourValue>(&value);
  if (colour == nullptr) return {};
  *count = 3;
  return {static_cast<double>(colour->red), static_cast<double>(colour->green),
          static_cast<double>(colour->blue)};
}

// A tenth of a point is fine enough for a drawing.
std::string Short(double number) { return FormatNumber(std::round(number * 10) / 10); }

std::string Text(double x, double y, const char* anchor, const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    escaped += c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
  }
  return "<text x='" + Short(x) + "' y='" + Short(y) + "' text-anchor='" + anchor + "'>" + escaped +
         "</text>\n";
}

const char* ColourOf(const Control& control, std::size_t line) {
  constexpr std::array kOfColours = {"#c0392b", "#2e8b57", "#2c6fbb"};
  constexpr std::array kOthers = {"#2c6fbb", "#d2771e", "#2e8b57"};
  return control.kind == ControlKind::kColour ? kOfColours.at(line) : kOthers.at(line);
}

class Chart {
 public:
  // The frames at which keys stand are drawn exactly.
  Chart(const Control& control, const Curve& curve, std::vector<double> keyFrames,
        const FrameRange& range, double top)
      : control_(control), range_(range), top_(top), frames_(std::move(keyFrames)) {
    for (int step = 0; step <= kSteps; ++step) {
      frames_.push_back(range.first + (range.last - range.first) * step / kSteps);
    }
    std::sort(frames_.begin(), frames_.end());
    for (const double frame : frames_) {
      std::size_t count = 0;
      const auto components = ComponentsOf(curve.At(frame), &count);
      lines_.resize(count);
      for (std::size_t i = 0; i < count; ++i) lines_[i].push_back(components.at(i));
    }
    low_ = high_ = lines_[0][0];
    for (const Line& line : lines_) {
      low_ = std::min(low_, *std::min_element(line.begin(), line.end()));
      high_ = std::max(high_, *std::max_element(line.begin(), line.end()));
    }
  }

  std::string Draw() const {
    const double bottom = top_ + kHeight;
    std::string svg = Text(kLeft, top_ - 10, "start", control_.name + UnitSuffix(control_));
    svg += "<rect x='" + Short(kLeft) + "' y='" + Short(top_) + "' width='" + Short(kWidth) +
           "' height='" + Short(kHeight) + "' fill='none' stroke='#bbb'/>\n";
    svg += Text(kLeft - 8, top_ + 10, "end", Short(high_));
    if (high_ > low_) svg += Text(kLeft - 8, bottom, "end", Short(low_));
    svg += Text(kLeft, bottom + 16, "start", Short(range_.first));
    svg += Text(kLeft + kWidth, bottom + 16, "end", "frame " + Short(range_.last));
    for (std::size_t i = 0; i < lines_.size(); ++i) svg += DrawLine(i);
    return svg;
  }

 private:
  std::string DrawLine(std::size_t index) const {
    std::string points;
    const double length = std::max(range_.last - range_.first, 1e-9);
    for (std::size_t i = 0; i < frames_.size(); ++i) {
      const double share = high_ > low_ ? (lines_[index][i] - low_) / (high_ - low_) : 0.5;
      const double x = kLeft + kWidth * (frames_[i] - range_.first) / length;
      points += (i > 0 ? " " : "") + Short(x) + "," + Short(top_ + kHeight * (1 - share));
    }
    return "<polyline fill='none' stroke-width='1.5' stroke='" +
           std::string(ColourOf(control_, index)) + "' points='" + points + "'/>\n";
  }

  const Control& control_;
  FrameRange range_;
  double top_;
  std::vector<double> frames_;
  std::vector<Line> lines_;
  double low_ = 0;
  double high_ = 0;
};

}  // namespace

FrameRange RangeOfKeys(const Settings& settings, const TimeBase& base) {
  FrameRange range;
  for (const Control& control : settings.GetPanel().controls) {
    const Keys* const keys = settings.KeysOf(control);
    if (keys == nullptr) continue;
    for (const Key& key : *keys) {
      range.first = std::min(range.first, key.time.Frame(base));
      range.last = std::max(range.last, key.time.Frame(base));
    }
  }
  return range;
}

std::string PlotCurves(const Settings& settings, const TimeBase& base, const FrameRange& range) {
  std::string charts;
  double top = kTop;
  for (const Control& control : settings.GetPanel().controls) {
    const Keys* const keys = settings.KeysOf(control);
    if (keys == nullptr) continue;
    std::vector<double> frames;
    for (const Key& key : *keys) frames.push_back(key.time.Frame(base));
    charts += Chart(control, Curve(control, *keys, base), frames, range, top).Draw();
    top += kChart;
  }
  const double height = std::max(top - kTop, kBottom);
  return "<svg xmlns='http://www.w3.org/2000/svg' width='" + Short(kLeft + kWidth + kRight) +
         "' height='" + Short(height) +
         "' font-family='sans-serif' font-size='12'>\n"
         "<rect width='100%' height='100%' fill='white'/>\n" +
         charts + "</svg>\n";
}

}  // namespace vitrell::look
