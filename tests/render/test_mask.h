// A lens mask with values chosen by a test, in place of one that a render built.
#ifndef VITRELL_TESTS_RENDER_TEST_MASK_H_
#define VITRELL_TESTS_RENDER_TEST_MASK_H_

#include <utility>
#include <vector>

#include "render/lens_mask.h"

namespace vitrell {

// Row by row over the rectangle of the worlds it is used with.
class TestMask {
 public:
  explicit TestMask(std::vector<double> values) : values_(std::move(values)) {
    g_LensMask = values_.data();
    g_LensMaskSize = values_.size();
  }
  ~TestMask() {
    g_LensMask = nullptr;
    g_LensMaskSize = 0;
  }
  TestMask(const TestMask&) = delete;
  TestMask& operator=(const TestMask&) = delete;

  const std::vector<double>& values() const { return values_; }

 private:
  std::vector<double> values_;
};

}  // namespace vitrell

#endif  // VITRELL_TESTS_RENDER_TEST_MASK_H_
