// Converts pixels between a picture's samples and the effect's worlds.
#ifndef VITRELL_MEDIA_EXCHANGE_H_
#define VITRELL_MEDIA_EXCHANGE_H_

#include <cstdint>
#include <vector>

#include "headless/world_buffer.h"
#include "media/picture.h"

namespace vitrell::media {

// A picture converted to the effect's pixels.
struct Given {
  headless::WorldBuffer world;
  std::int64_t clippedPixels = 0;  // with a value below black, above white, or NaN
};

// The picture as the effect gets it, in the size that it sees, transparent black where the file
// holds no pixels: straight ARGB, 0..255 or (deep) 0..32768, rounded to the
// nearest, values outside clipped. Grey fills all three colours; no alpha means opaque. Colours
// that the file holds multiplied by alpha are divided; where alpha is 0 they stay as they are.
Given GiveToEffect(const Picture& picture, bool deep);

// Whether the result, within a window, needs channels that the input may not have.
struct ResultTraits {
  bool grey = true;    // red, green and blue agree in every pixel
  bool opaque = true;  // alpha is white in every pixel
};
ResultTraits Inspect(const headless::WorldBuffer& result, const Window& within);

// How the samples of the output are to be stored.
enum class SampleType { kByte, kWord, kHalf, kFloat };

enum class Role { kRed, kGreen, kBlue, kAlpha, kExtra };

struct OutputChannel {
  Role role = Role::kRed;
  int source = -1;  // the channel of the input file that it replaces; -1: a new channel
};

struct OutputForm {
  SampleType type = SampleType::kByte;
  bool straight = true;  // false: colours are multiplied by alpha
  // The output covers what the effect saw instead of the input's data window.
  bool wholeFrame = false;
  std::vector<OutputChannel> channels;
};

// The whole result as samples for a file; ResultRows does the same in blocks of rows.
Samples TakeFromEffect(const Picture& input, const headless::WorldBuffer& given,
                       const headless::WorldBuffer& result, const OutputForm& form);

// How many of the clipped pixels the effect changed; in these the clipped values are lost.
std::int64_t CountClippedAndChanged(const Picture& input, const headless::WorldBuffer& given,
                                    const headless::WorldBuffer& result);

// Visible pixels of the result that lie outside the data window and so cannot be stored.
std::int64_t CountPaintedBeyondData(const Picture& input, const headless::WorldBuffer& result);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_EXCHANGE_H_
