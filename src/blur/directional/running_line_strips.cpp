// The directional blur of 8-bit pixels along rows, columns and diagonals in strips of rows, from
// running sums.
#include "blur/directional/running_line_strips.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "base/pixel_access.h"

namespace vitrell {
namespace {

// From this many undecided groups in a block on, it pays to look for uniform areas, whose averages
// are all integers.
constexpr int kManyGroups = 4;

}  // namespace

// Collects groups of pixels whose averages lie too near to an integer, and averages them by their
// definition as soon as the engine has its fill. Call Flush() at the end.
class RunningLineStrips::UndecidedGroups {
 public:
  explicit UndecidedGroups(const RunningLineStrips& strips) : strips_(strips) {}

  // The group's first pixel and its running sums. The averages are written into outRow, which
  // begins at column 0.
  void Add(std::int32_t row, std::int32_t column, const std::int32_t* sums, PF_Pixel* outRow) {
    places_[count_] = {row, column, outRow};
    OrderedGroup& group = groups_[count_];
    group.line = strips_.LineAt(row, column);
    for (int i = 0; i < strips_.engine_->groupPixels; ++i) {
      group.counts[i] = sums[std::ptrdiff_t{i} * kChannels];
    }
    if (++count_ == kOrderedGroups) {
      Flush();
    }
  }

  void Flush() {
    if (count_ == 0) {
      return;
    }
    std::fill(groups_ + count_, groups_ + kOrderedGroups, groups_[0]);
    PF_Pixel averages[kOrderedGroups][kMaxGroupPixels];
    strips_.averages_.Average(*strips_.engine_, groups_, averages);
    for (int i = 0; i < count_; ++i) {
      const Place& place = places_[i];
      const Range columns = strips_.Inside(place.column, strips_.engine_->groupPixels);
      strips_.Store(place.row, columns, averages[i] + (columns.first - place.column), place.outRow);
    }
    count_ = 0;
  }

 private:
  struct Place {
    std::int32_t row;
    std::int32_t column;
    PF_Pixel* outRow;
  };

  const RunningLineStrips& strips_;
  Place places_[kOrderedGroups];
  OrderedGroup groups_[kOrderedGroups];
  int count_ = 0;
};

PF_Err RunningLineStrips::Prepare(const PF_LayerDef& src, const LensMaskView& mask,
                                  const LineTaps& line, const RunningEngine& engine) {
  line_ = FindRunningLine(line);
  const std::int32_t reach = line_.columnStep != 0 ? line_.length : 0;
  if (line_.length == 0 || !HasPixelsFromOrigin(src) || reach > src.width + kRunPixels) {
    return PF_Err_NONE;
  }
  src_ = src;
  mask_ = mask;
  ones_ = mask.Ones();
  if (!averages_.Prepare(line)) {
    return PF_Err_OUT_OF_MEMORY;
  }
  if (!averages_.IsReady()) {
    return PF_Err_NONE;
  }
  // A block may begin a strip's height to the left of the picture and end a block's width to the
  // right of where it could.
  const MirroredPixels::Reach border = {reach + kStripRows + kRunPixels + 1, line_.length + 1};
  if (!pixels_.Build(src, border)) {
    return PF_Err_OUT_OF_MEMORY;
  }
  engine_ = &engine;
  return PF_Err_NONE;
}

void RunningLineStrips::FillStrip(std::int32_t firstRow, std::int32_t endRow, PF_Pixel* out) const {
  UndecidedGroups undecided(*this);
  if (line_.rowStep == 0) {
    for (std::int32_t row = firstRow; row < endRow; ++row) {
      FillRow(row, out + std::ptrdiff_t{row - firstRow} * src_.width, &undecided);
    }
  } else {
    // Blocks move sideways with a diagonal; the first or the last one begins outside the picture.
    const std::int32_t drift = line_.columnStep * (endRow - 1 - firstRow);
    const std::int32_t end = src_.width + std::max(0, -drift);
    for (std::int32_t column = std::min(0, -drift); column < end; column += kRunPixels) {
      FillBlock({firstRow, endRow}, column, out, &undecided);
    }
  }
  undecided.Flush();
}

// A line along its own row: only the columns in the lens are summed.
void RunningLineStrips::FillRow(std::int32_t row, PF_Pixel* outRow,
                                UndecidedGroups* undecided) const {
  std::copy_n(StoredPixel<PF_Pixel>(&src_, row, 0), src_.width, outRow);
  const Range columns = InLens(row, {0, src_.width});
  if (columns.first == columns.end) {
    return;
  }
  RunningPixel pixel;
  alignas(64) std::int32_t sums[kRunValues];
  engine_->startPixel(LineAt(row, columns.first), &pixel);
  for (std::int32_t column = columns.first; column < columns.end; column += kRunPixels) {
    engine_->sumRow(LineAt(row, column), &pixel, sums);
    StoreBlock(row, column, sums, outRow, undecided);
  }
}

// The block that begins at a column in a strip's first row, and what it moves over in the others.
// out is the first pixel of the strip.
void RunningLineStrips::FillBlock(const Range& rows, std::int32_t column, PF_Pixel* out,
                                  UndecidedGroups* undecided) const {
  if (!IsAnyInLens(rows, column)) {
    CopyBlock(rows, column, out);
    return;
  }
  RunningSums block;
  engine_->start(LineAt(rows.first, column), &block);
  for (std::int32_t row = rows.first; row < rows.end; ++row) {
    const std::int32_t drift = (row - rows.first) * line_.columnStep;
    PF_Pixel* const outRow = out + std::ptrdiff_t{row - rows.first} * src_.width;
    StoreBlock(row, column + drift, block.sums, outRow, undecided);
    engine_->advance(LineAt(row, column + drift), &block);
  }
}

void RunningLineStrips::CopyBlock(const Range& rows, std::int32_t column, PF_Pixel* out) const {
  for (std::int32_t row = rows.first; row < rows.end; ++row) {
    const std::int32_t drift = (row - rows.first) * line_.columnStep;
    const Range columns = Inside(column + drift, kRunPixels);
    const PF_Pixel* const in = StoredPixel<PF_Pixel>(&src_, row, 0);
    PF_Pixel* const outRow = out + std::ptrdiff_t{row - rows.first} * src_.width;
    for (std::int32_t x = columns.first; x < columns.end; ++x) {
      outRow[x] = in[x];
    }
  }
}

void RunningLineStrips::StoreBlock(std::int32_t row, std::int32_t column, const std::int32_t* sums,
                                   PF_Pixel* outRow, UndecidedGroups* undecided) const {
  const Range columns = Inside(column, kRunPixels);
  if (columns.first >= columns.end) {
    return;
  }
  PF_Pixel averages[kRunPixels];
  std::uint8_t values[kRunValues];
  std::uint64_t unsure = engine_->average(sums, line_.Limits(), values);
  std::memcpy(averages, values, sizeof(averages));
  if (std::popcount(unsure) >= kManyGroups) {
    unsure = AverageUniform(row, column, unsure, averages);
  }
  Store(row, columns, averages + (columns.first - column), outRow);
  for (; unsure != 0; unsure &= unsure - 1) {
    const std::int32_t pixel = std::countr_zero(unsure) * engine_->groupPixels;
    const Range group = InLens(row, Inside(column + pixel, engine_->groupPixels));
    if (group.first < group.end) {
      undecided->Add(row, column + pixel, sums + std::ptrdiff_t{pixel} * kChannels, outRow);
    }
  }
}

// Of a block's undecided groups averages those in uniform areas and returns the others.
std::uint64_t RunningLineStrips::AverageUniform(std::int32_t row, std::int32_t column,
                                                std::uint64_t unsure, PF_Pixel* averages) const {
  const LinePixels line = LineAt(row, column);
  const std::uint64_t uniform = unsure & engine_->findUniform(line);
  const std::uint8_t* const pixels = line.column + line.rows[0];
  for (std::uint64_t groups = uniform; groups != 0; groups &= groups - 1) {
    const int first = std::countr_zero(groups) * engine_->groupPixels;
    for (int i = first; i < first + engine_->groupPixels; ++i) {
      averages[i] = averages_.OfUniform(pixels + i * kPixelBytes);
    }
  }
  return unsure & ~uniform;
}

// Pixels outside the lens, and those whose whole line is transparent, keep their input.
void RunningLineStrips::Store(std::int32_t row, const Range& columns, const PF_Pixel* averages,
                              PF_Pixel* outRow) const {
  const PF_Pixel* const in = StoredPixel<PF_Pixel>(&src_, row, 0);
  const bool isInside = ones_.Contain(columns.first, row) && ones_.Contain(columns.end - 1, row);
  for (std::int32_t x = columns.first; x < columns.end; ++x) {
    const PF_Pixel& average = averages[x - columns.first];
    const bool isInLens = isInside || mask_.At(x, row) > kMaskThreshold;
    outRow[x] = average.alpha != 0 && isInLens ? average : in[x];
    outRow[x].alpha = in[x].alpha;
  }
}

LinePixels RunningLineStrips::LineAt(std::int32_t row, std::int32_t column) const {
  return {pixels_.Column(column), pixels_.Rows(row), line_.columnStep * kPixelBytes, line_.rowStep,
          line_.length};
}

RunningLineStrips::Range RunningLineStrips::Inside(std::int32_t column, std::int32_t count) const {
  return {std::max(column, 0), std::min(column + count, src_.width)};
}

// The columns without those outside the lens on either side.
RunningLineStrips::Range RunningLineStrips::InLens(std::int32_t row, const Range& columns) const {
  Range inner = columns;
  while (inner.first < inner.end && !(mask_.At(inner.first, row) > kMaskThreshold)) {
    ++inner.first;
  }
  while (inner.end > inner.first && !(mask_.At(inner.end - 1, row) > kMaskThreshold)) {
    --inner.end;
  }
  return inner;
}

// Whether a block that begins at a column in the first of these rows moves over any of the lens.
bool RunningLineStrips::IsAnyInLens(const Range& rows, std::int32_t column) const {
  for (std::int32_t row = rows.first; row < rows.end; ++row) {
    const std::int32_t drift = (row - rows.first) * line_.columnStep;
    const Range columns = InLens(row, Inside(column + drift, kRunPixels));
    if (columns.first < columns.end) {
      return true;
    }
  }
  return false;
}

}  // namespace vitrell
