// A lens mask with values chosen by a test, in place of one that a render built.
#ifndef VITRELL_TESTS_LENS_TEST_MASK_H_
#define VITRELL_TESTS_LENS_TEST_MASK_H_

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "lens/lens_mask.h"

namespace vitrell {

// Values in row-major order over the rectangle of the worlds it is used with. With a width there
// are mask rows too, which a render always builds and the stages' fast paths read.
class TestMask {
 public:
  explicit TestMask(std::vector<double> values, std::size_t width = 0)
      : values_(std::move(values)) {
    g_LensMask = values_.data();
    g_LensMaskSize = values_.size();
    for (std::size_t first = 0; width > 0 && first < values_.size(); first += width) {
      rows_.push_back(RowOf(values_.data() + first, static_cast<std::uint32_t>(width)));
    }
    if (width > 0) {
      g_LensMaskRows = {rows_.data(), static_cast<std::uint32_t>(width)};
    }
  }
  // `value` everywhere, with or without mask rows.
  static TestMask Uniform(A_long width, A_long height, double value, bool isInRows = false) {
    const auto columns = static_cast<std::size_t>(width);
    return TestMask(std::vector<double>(columns * static_cast<std::size_t>(height), value),
                    isInRows ? columns : 0);
  }
  ~TestMask() {
    g_LensMask = nullptr;
    g_LensMaskSize = 0;
    g_LensMaskRows = {};
  }
  TestMask(const TestMask&) = delete;
  TestMask& operator=(const TestMask&) = delete;

  const std::vector<double>& values() const { return values_; }

 private:
  // The first run of ones is the inner one; zeros at both ends are left to the outer value.
  static MaskRow RowOf(const double* values, std::uint32_t width) {
    MaskRow row = {};
    row.values = values;
    row.length = width;
    while (row.length > 0 && values[row.begin] == 0.0) {
      ++row.begin;
      --row.length;
    }
    while (row.length > 0 && values[row.begin + row.length - 1] == 0.0) {
      --row.length;
    }
    row.inner = 1;
    while (row.innerBegin < width && values[row.innerBegin] != 1.0) {
      ++row.innerBegin;
    }
    while (row.innerBegin + row.innerLength < width &&
           values[row.innerBegin + row.innerLength] == 1.0) {
      ++row.innerLength;
    }
    return row;
  }

  std::vector<double> values_;
  std::vector<MaskRow> rows_;
};

}  // namespace vitrell

#endif  // VITRELL_TESTS_LENS_TEST_MASK_H_
