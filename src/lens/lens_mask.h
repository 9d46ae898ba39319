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

// One double per pixel of the output's extent rectangle, row-major; 1 inside the lens, 0 outside.
// If the rectangle has more than four times the pixels of the render's worlds, only its beginning
// is stored, which is more than they can index. Built by the render thread; after that any number
// of host threads read it until the render ends. Unless a blur may follow the lens, values that the
// runs of the rows define are not written here.
extern double* g_LensMask;

// Number of doubles in g_LensMask; 0 if no memory is allocated.
extern std::size_t g_LensMaskSize;

// One row of the mask as runs: `inner` in columns [innerBegin, innerBegin + innerLength), otherwise
// values[column] in [begin, begin + length), otherwise `outer`.
struct MaskRow {
  const double* values = nullptr;  // Indexed by column.
  std::uint32_t begin = 0;
  std::uint32_t length = 0;
  std::uint32_t innerBegin = 0;
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

// The rows of the mask; null if every value is in g_LensMask.
struct MaskRows {
  const MaskRow* rows = nullptr;
  std::uint32_t width = 0;
  bool hasAllValues = true;  // g_LensMask contains the values of the runs too.
};
extern MaskRows g_LensMaskRows;

// A mask value at or below this is outside the lens; some stages count exactly this value as
// inside.
inline constexpr double kMaskThreshold = 0.0001;

// What the mask is built from, apart from the settings.
struct LensMaskInput {
  const PF_InData* inData;       // For the host's maths callbacks.
  const PF_LayerDef* output;     // Its extent hint is the rectangle, its width and height the size.
  PF_LRect inputExtent;          // The input layer's extent hint as the host gave it.
  std::int64_t inputPixels = 0;  // Width x height of the input and of the working worlds.
};

// Frees a mask left over from an earlier render, allocates a new one and draws it as planned.
// Returns PF_Err_OUT_OF_MEMORY, leaving no mask, if memory is short.
[[nodiscard]] PF_Err BuildLensMask(const LensMaskInput& input, const LX_Info& info,
                                   const MaskPlan& plan);

// Frees the mask. With keepAddress g_LensMask keeps its now dangling address, as it does when a
// render fails before its first stage; that address is never dereferenced or freed again.
void FreeLensMask(bool keepAddress);

// The mask's values in row-major order of its own rectangle. For use during one pass.
class LensMaskValues {
 public:
  LensMaskValues() : values_(g_LensMask), size_(g_LensMaskSize), rows_(g_LensMaskRows) {}

  // 0.0 for an index beyond the last value.
  double At(std::uint64_t index) const {
    if (index >= size_) {
      return 0.0;
    }
    return rows_.hasAllValues ? values_[index]
                              : rows_.rows[index / rows_.width].At(
                                    static_cast<std::uint32_t>(index % rows_.width));
  }

  // The first `count` values as an array; null unless g_LensMask contains all of them.
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

// A quick test that settles most pixels inside a lens: whether a position lies in its row's inner
// run of ones.
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

  // True if the runs of ones cover a whole world of this size.
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
// and wherever the index exceeds the buffer. For use during one pass.
class LensMaskView {
 public:
  explicit LensMaskView(const PF_LayerDef& world);

  VITRELL_UNSIGNED_WRAPS double At(std::int32_t x, std::int32_t y) const {
    const std::uint32_t column = static_cast<std::uint32_t>(x) - left_;
    const std::uint32_t row = static_cast<std::uint32_t>(y) - top_;
    return row < rowCount_ && column < width_ ? rows_[row].At(column) : AtIndex(column, row);
  }

  // Sets the value and returns true where the world's rows coincide with rows of the mask; returns
  // false elsewhere. It calls nothing, so that a callback that handles the rest by a tail call need
  // not save registers.
  VITRELL_UNSIGNED_WRAPS bool QuickAt(std::int32_t x, std::int32_t y, double* value) const {
    const std::uint32_t column = static_cast<std::uint32_t>(x) - left_;
    const std::uint32_t row = static_cast<std::uint32_t>(y) - top_;
    if (row >= rowCount_ || column >= width_) {
      return false;
    }
    *value = rows_[row].At(column);
    return true;
  }

  // Contains no position if the mask is inverted or the world's origin is not (0, 0).
  MaskOnes Ones() const;

  // The rows, indexed by layer position; null unless they are 1 within their inner runs, 0 outside
  // their values, and hold every position of a world of this size with origin (0, 0).
  const MaskRow* PlainRows(std::int32_t width, std::int32_t height) const;

  // All values of the world's rectangle as a row-major array; null unless memory contains them all,
  // as it does in a render whose settings let a blur follow the lens.
  const double* ValuesInMemory() const { return values_.InMemory(std::uint64_t{width_} * height_); }

 private:
  // Handles every position.
  double AtIndex(std::uint32_t column, std::uint32_t row) const;

  LensMaskValues values_;
  const MaskRow* rows_ = nullptr;
  std::uint32_t rowCount_ = 0;  // Rows of this rectangle that coincide with the mask's.
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
