// The lens mask: how much each pixel of the output lies inside the lens.
#ifndef VITRELL_LENS_LENS_MASK_H_
#define VITRELL_LENS_LENS_MASK_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/numeric.h"
#include "base/render_records.h"
#include "host/host_api.h"

namespace vitrell {

// One double per pixel of the output's extent rectangle, row by row; 1 inside, 0 outside. Of a
// rectangle that is many times larger than the worlds it has the beginning only, which is more than
// they can ask for. Built by the render thread, then only read, by any number of host threads,
// until the render ends. Unless a blur follows the lens, values that the rows tell are missing
// here.
extern double* g_LensMask;

// Number of doubles behind g_LensMask; 0 whenever there is no memory behind it.
extern std::size_t g_LensMaskSize;

// One row of the mask: two runs of equal values, and what lies between them.
struct MaskRow {
  const double* values = nullptr;  // By column. Read between the runs only.
  std::uint32_t begin = 0;         // Before this column and `length` columns on: `outer`.
  std::uint32_t length = 0;
  std::uint32_t innerBegin = 0;  // From this column on, `innerLength` columns: `inner`.
  std::uint32_t innerLength = 0;
  double outer = 0;
  double inner = 0;

  // column must be less than the mask's width.
  VITRELL_UNSIGNED_WRAPS double At(std::uint32_t column) const {
    if (column - innerBegin < innerLength) {
      return inner;
    }
    return column - begin < length ? values[column] : outer;
  }
};

// The rows of the mask; null where every value is in g_LensMask.
struct MaskRows {
  const MaskRow* rows = nullptr;
  std::uint32_t width = 0;
  bool hasAllValues = true;  // g_LensMask holds those that the rows tell, too.
};
extern MaskRows g_LensMaskRows;

// Mask values at or below this count as outside the lens; stages differ in strictness.
inline constexpr double kMaskThreshold = 0.0001;

// What the mask is built from besides the settings.
struct LensMaskInput {
  const PF_InData* inData;       // For the host's maths callbacks.
  const PF_LayerDef* output;     // Its extent hint is the rectangle, its width and height the size.
  PF_LRect inputExtent;          // The input layer's extent hint as the host gave it.
  std::int64_t inputPixels = 0;  // Width times height of the input, and so of the working worlds.
};

// Frees a mask left by an earlier render, allocates W x H values and draws the planned mask.
// Answers PF_Err_OUT_OF_MEMORY when the memory is not to be had; there is then no mask.
[[nodiscard]] PF_Err BuildLensMask(const LensMaskInput& input, const LX_Info& info,
                                   const MaskPlan& plan);

// Frees the mask. With keepAddress g_LensMask keeps its old, now dangling value, as the failure
// paths before the first stage leave it; it is never read or freed again.
void FreeLensMask(bool keepAddress);

// The mask's values in the order of its own rectangle, row by row. For use during one pass.
class LensMaskValues {
 public:
  LensMaskValues() : values_(g_LensMask), size_(g_LensMaskSize), rows_(g_LensMaskRows) {}

  // 0.0 beyond the last one.
  double At(std::uint64_t index) const {
    if (index >= size_) {
      return 0.0;
    }
    return rows_.hasAllValues ? values_[index]
                              : rows_.rows[index / rows_.width].At(
                                    static_cast<std::uint32_t>(index % rows_.width));
  }

  // As many values from the first on, one behind the other; null unless memory holds all of them.
  const double* InMemory(std::uint64_t count) const {
    return rows_.hasAllValues && count <= size_ ? values_ : nullptr;
  }

  std::uint64_t size() const { return size_; }
  const MaskRows& rows() const { return rows_; }

 private:
  const double* values_;
  std::uint64_t size_;
  MaskRows rows_;
};

// A quick answer for most pixels of a lens: positions in a row's run of ones.
class MaskOnes {
 public:
  MaskOnes() = default;
  MaskOnes(const MaskRow* rows, std::uint32_t count) : rows_(rows), count_(count) {}

  // True where the mask is certainly 1.
  VITRELL_UNSIGNED_WRAPS bool Contain(std::int32_t x, std::int32_t y) const {
    if (static_cast<std::uint32_t>(y) >= count_) {
      return false;
    }
    const MaskRow& row = rows_[y];
    return static_cast<std::uint32_t>(x) - row.innerBegin < row.innerLength;
  }

  // True when they are all that a world of this size can ask for.
  bool Cover(std::int32_t width, std::int32_t height) const {
    return height >= 0 && static_cast<std::uint32_t>(height) <= count_ &&
           std::all_of(rows_, rows_ + height, [width](const MaskRow& row) {
             return row.innerBegin == 0 && std::int64_t{row.innerLength} >= width;
           });
  }

 private:
  const MaskRow* rows_ = nullptr;
  std::uint32_t count_ = 0;
};

// The mask as one world sees it: indexed by that world's extent hint, 0.0 outside that rectangle
// and wherever the index would leave the buffer. For use during one pass.
class LensMaskView {
 public:
  explicit LensMaskView(const PF_LayerDef& world);

  VITRELL_UNSIGNED_WRAPS double At(std::int32_t x, std::int32_t y) const {
    const std::uint32_t column = static_cast<std::uint32_t>(x) - left_;
    const std::uint32_t row = static_cast<std::uint32_t>(y) - top_;
    return row < rowCount_ && column < width_ ? rows_[row].At(column) : AtIndex(column, row);
  }

  // The value where the world's rows are rows of the mask; false elsewhere. Calls nothing, so that
  // a callback that goes on in another function elsewhere saves no registers.
  VITRELL_UNSIGNED_WRAPS bool QuickAt(std::int32_t x, std::int32_t y, double* value) const {
    const std::uint32_t column = static_cast<std::uint32_t>(x) - left_;
    const std::uint32_t row = static_cast<std::uint32_t>(y) - top_;
    if (row >= rowCount_ || column >= width_) {
      return false;
    }
    *value = rows_[row].At(column);
    return true;
  }

  // Knows of no position when the mask is inverted or the world's origin is not (0, 0).
  MaskOnes Ones() const;

  // All values of the world's rectangle, row by row, one behind the other; null when memory does
  // not hold them all. It does in a render whose settings let a blur follow the lens.
  const double* ValuesInMemory() const { return values_.InMemory(std::uint64_t{width_} * height_); }

 private:
  // For every position.
  double AtIndex(std::uint32_t column, std::uint32_t row) const;

  LensMaskValues values_;
  const MaskRow* rows_ = nullptr;
  std::uint32_t rowCount_ = 0;  // Rows of this rectangle that are rows of the mask.
  std::uint32_t left_;
  std::uint32_t top_;
  std::uint32_t width_;
  std::uint32_t height_;
};

// The mask at layer position (x, y) as the given world sees it.
inline double GetLensMask(int x, int y, const PF_LayerDef* world) {
  return LensMaskView(*world).At(x, y);
}

}  // namespace vitrell

#endif  // VITRELL_LENS_LENS_MASK_H_
