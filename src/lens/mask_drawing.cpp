// Draws the lens mask row by row.
#include "lens/mask_drawing.h"

#include <algorithm>

#include "base/numeric.h"
#include "lens/custom_lens.h"
#include "lens/lens_shapes.h"

namespace vitrell {
namespace {

// Raised-cosine fall-off from 1 inside to 0 outside; exact at both ends, whatever the host's cosine
// returns. The last value is cached because straight edges repeat it many times.
class FallOff {
 public:
  explicit FallOff(const PF_ANSICallbacks& maths) : maths_(maths) {}

  double At(double rawDistance) {
    if (rawDistance != last_) {
      last_ = rawDistance;
      value_ = rawDistance == 1 ? 0 : (maths_.cos(rawDistance * kPi) + 1) * 0.5;
    }
    return value_;
  }

 private:
  const PF_ANSICallbacks& maths_;
  double last_ = 0;
  double value_ = 1;
};

double Inverted(double inside, bool invert) { return invert ? 1 - inside : inside; }

void DrawUniform(const MaskCanvas& canvas, double value) {
  std::for_each(canvas.rows, canvas.rows + canvas.rowCount, [&](MaskRow& row) {
    row.innerLength = canvas.width;
    row.inner = value;
  });
}

void DrawCustom(const LensMaskInput& input, const LX_Info& info, bool invert,
                const MaskCanvas& canvas) {
  const CustomLens lens(input, info);
  for (std::uint64_t r = 0; r < canvas.rowCount; ++r) {
    const std::uint32_t count = canvas.ValuesOfRow(r);
    double* const values = canvas.values + r * canvas.width;
    const auto y = static_cast<std::int32_t>(canvas.top + static_cast<std::int64_t>(r));
    lens.FillRow(y, canvas.left, count, values);
    if (invert) {
      std::transform(values, values + count, values, [](double inside) { return 1 - inside; });
    }
    canvas.rows[r].values = values;
    canvas.rows[r].length = canvas.width;
  }
}

// Draws one of the shapes that are not custom.
class ShapeDrawing {
 public:
  ShapeDrawing(const LensMaskInput& input, const LX_Info& info, bool invert,
               const MaskCanvas& canvas)
      : canvas_(canvas),
        shape_(input.inData, info, input.output->width, input.output->height),
        fallOff_(input.inData->utils->ansi),
        invert_(invert),
        twiceX_(2 * (std::int64_t{info.positionX} - canvas.left)),
        twiceY_(2 * (std::int64_t{info.positionY} - canvas.top)) {}

  void Draw() {
    const auto rowCount = static_cast<std::int64_t>(canvas_.rowCount);
    for (std::int64_t r = 0; r < rowCount; ++r) {
      // The row mirrored about the shape's position, usable once it has been drawn.
      const std::int64_t other = twiceY_ - r;
      const bool hasTwin = shape_.IsSymmetric() && other >= 0 && other < r;
      if (hasTwin && shape_.IsUpright()) {
        canvas_.rows[r] = canvas_.rows[other];
      } else {
        DrawRow(static_cast<std::uint64_t>(r), hasTwin ? canvas_.rows + other : nullptr);
      }
    }
  }

 private:
  void DrawRow(std::uint64_t r, const MaskRow* twin) {
    const auto y = static_cast<std::int32_t>(canvas_.top + static_cast<std::int64_t>(r));
    const std::uint32_t count = canvas_.ValuesOfRow(r);
    const ShapeSpans spans = shape_.SpansOf(y, canvas_.left, count);
    double* const values = canvas_.values + r * canvas_.width;
    MaskRow& row = canvas_.rows[r];
    row = {.values = values,
           .begin = spans.outer.begin,
           .length = spans.outer.end - spans.outer.begin,
           .innerBegin = spans.inner.begin,
           .innerLength = spans.inner.end - spans.inner.begin,
           .outer = Inverted(0, invert_),
           .inner = Inverted(1, invert_)};
    // A row of an upright shape mirrors itself; a row of a rotated one is its twin, reversed.
    const MaskRow* const mirrored = shape_.IsUpright() ? &row : twin;
    DrawBetween(y, {spans.outer.begin, spans.inner.begin}, mirrored, values);
    DrawBetween(y, {spans.inner.end, spans.outer.end}, mirrored, values);
  }

  // Computes the columns that are neither certainly inside nor certainly outside.
  void DrawBetween(std::int32_t y, ColumnSpan span, const MaskRow* mirrored, double* values) {
    if (!shape_.IsSymmetric() || mirrored == nullptr) {
      DrawRun(y, span, values);
      return;
    }
    std::uint32_t i = span.begin;
    while (i < span.end) {
      if (IsMirrored(i)) {
        values[i] = mirrored->At(static_cast<std::uint32_t>(twiceX_ - i));
        ++i;
        continue;
      }
      const std::uint32_t begin = i;
      while (i < span.end && !IsMirrored(i)) {
        ++i;
      }
      DrawRun(y, {begin, i}, values);
    }
  }

  // Whether column i of a symmetric shape repeats one that has been drawn.
  bool IsMirrored(std::uint32_t i) const {
    const std::int64_t other = twiceX_ - i;
    return other >= 0 && other < (shape_.IsUpright() ? std::int64_t{i} : canvas_.width);
  }

  void DrawRun(std::int32_t y, ColumnSpan run, double* values) {
    const auto x = static_cast<std::int32_t>(canvas_.left + std::int64_t{run.begin});
    shape_.RawDistances(x, y, run.end - run.begin, values + run.begin);
    std::transform(
        values + run.begin, values + run.end, values + run.begin,
        [this](double rawDistance) { return Inverted(fallOff_.At(rawDistance), invert_); });
  }

  const MaskCanvas& canvas_;
  const LensShape shape_;
  FallOff fallOff_;
  bool invert_;
  std::int64_t twiceX_;  // Column i mirrors to column twiceX_ - i, and rows likewise.
  std::int64_t twiceY_;
};

// Expands the rows' runs into the value buffer.
void WriteOut(const MaskCanvas& canvas) {
  for (std::uint64_t r = 0; r < canvas.rowCount; ++r) {
    const MaskRow& row = canvas.rows[r];
    double* const values = canvas.values + r * canvas.width;
    const std::uint32_t count = canvas.ValuesOfRow(r);
    const std::uint32_t begin = std::min(row.begin, count);
    const std::uint32_t end = std::min(row.begin + row.length, count);
    std::fill(values, values + begin, row.outer);
    if (row.values != values) {
      std::copy(row.values + begin, row.values + end, values + begin);
    }
    std::fill(values + end, values + count, row.outer);
    std::fill(values + std::min(row.innerBegin, count),
              values + std::min(row.innerBegin + row.innerLength, count), row.inner);
  }
}

}  // namespace

void DrawMask(const LensMaskInput& input, const LX_Info& info, const MaskPlan& plan,
              const MaskCanvas& canvas) {
  const bool invert = plan.isInverted;
  switch (plan.source) {
    case MaskSource::kNothing:
      DrawUniform(canvas, Inverted(0, invert));
      break;
    case MaskSource::kEverything:
      DrawUniform(canvas, Inverted(1, invert));
      break;
    case MaskSource::kShape:
      ShapeDrawing(input, info, invert, canvas).Draw();
      break;
    case MaskSource::kCustomLayer:
      DrawCustom(input, info, invert, canvas);
      break;
  }
  if (plan.isWholeNeeded) {
    WriteOut(canvas);
  }
}

}  // namespace vitrell
