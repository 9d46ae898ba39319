// The samples of a picture's file while it is written anew.
#ifndef VITRELL_MEDIA_ORIGINAL_ROWS_H_
#define VITRELL_MEDIA_ORIGINAL_ROWS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "headless/world_buffer.h"
#include "media/picture.h"

namespace vitrell::media {

// Frees the samples of a picture that can be told from what was given to the effect: straight ones
// without further channels. Of two 16-bit integers that became the same value one bit is kept. Of
// half floats, many of which share a value where they are dark or outside black to white, those are
// kept that are not the value itself, if they are not most. OriginalRows finds all again, exactly.
void ReleaseSamples(Picture& picture, const headless::WorldBuffer& given);

// For each channel of the file its place in the host's pixels (alpha, red, green, blue); empty
// where one has none.
std::vector<std::size_t> HostPlaces(const Picture& picture);

template <typename Sample, typename Pixel>
class OriginalRows {
 public:
  // The arguments must outlive the object.
  OriginalRows(const Picture& picture, const std::vector<Sample>& samples,
               const headless::WorldBuffer& given);

  // The first sample of a pixel; its place is that in the frame. Valid until the next call for
  // another row.
  const Sample* At(int x, int y) {
    if (picture_.released) {
      if (y != row_) Rebuild(y);
      return rebuilt_.data() + static_cast<std::size_t>(x) * picture_.Channels();
    }
    const auto row = static_cast<std::size_t>(y - data_.y);
    const auto column = static_cast<std::size_t>(x - data_.x);
    return samples_.data() +
           (row * static_cast<std::size_t>(data_.width) + column) * picture_.Channels();
  }

 private:
  void Rebuild(int y);

  const Picture& picture_;
  const std::vector<Sample>& samples_;
  const headless::WorldBuffer& given_;
  const Window data_;
  std::vector<std::size_t> places_;
  std::vector<Sample> usual_;
  std::vector<Sample> rebuilt_;
  int row_ = -1;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_ORIGINAL_ROWS_H_
