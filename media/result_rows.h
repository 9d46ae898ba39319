// The result of the effect as rows of samples for a file.
#ifndef VITRELL_MEDIA_RESULT_ROWS_H_
#define VITRELL_MEDIA_RESULT_ROWS_H_

#include <OpenImageIO/imageio.h>

#include <cstddef>
#include <functional>
#include <vector>

#include "headless/world_buffer.h"
#include "media/exchange.h"
#include "media/picture.h"

namespace vitrell::media {

// Where the effect left a channel as it was `given`, the file's own value is kept: 16-bit files
// hold 65536 values and the effect's depth only 32769, so a picture that the effect did not change
// keeps every bit. A value that was clipped for the effect is kept only where the effect left the
// whole pixel: beside channels that it computed from clipped values it would be another colour.
// Pixels of the file that the effect did not see are kept.
class ResultRows {
 public:
  // The arguments must outlive the object.
  ResultRows(const Picture& input, const headless::WorldBuffer& given,
             const headless::WorldBuffer& result, const OutputForm& form);

  // Of the output: what the effect saw, or the window of the file's pixels, as the form tells.
  int Width() const { return window_.width; }
  int Height() const { return window_.height; }
  OIIO::TypeDesc Type() const;

  // Rows from 0 on, interleaved, without padding. Valid until the next call.
  const void* Take(int begin, int end);

 private:
  Window window_;
  SampleType type_;
  std::size_t rowBytes_;
  std::function<void(int row, void* out)> takeRow_;
  std::vector<std::byte> rows_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_RESULT_ROWS_H_
