// Pixels on their way from a picture to the effect and back.
#ifndef VITRELL_MEDIA_EXCHANGE_H_
#define VITRELL_MEDIA_EXCHANGE_H_

#include <cstdint>
#include <vector>

#include "headless/world_buffer.h"
#include "media/picture.h"

namespace vitrell::media {

// What a picture became when it was given to the effect.
struct Given {
  headless::WorldBuffer world;
  std::int64_t clippedPixels = 0;  // had a value outside black to white, or not a number
};

// The picture as the effect gets it, in the size that it sees, transparent black where the file
// holds no pixels: straight ARGB, 0..255 or (deep) 0..32768, rounded to the
// nearest, values outside clipped. Grey fills all three colours; no alpha means opaque. Colours
// that the file holds multiplied by alpha are divided; where alpha is 0 they stay as they are.
Given GiveToEffect(const Picture& picture, bool deep);

// What of the result cannot be stored in the channels of the input; of a part of it.
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
  int source = -1;  // the channel of the input's file that it continues; -1: a new one
};

struct OutputForm {
  SampleType type = SampleType::kByte;
  bool straight = true;  // false: colours are multiplied by alpha
  // What the effect saw is written, and not the window of the file's pixels.
  bool wholeFrame = false;
  std::vector<OutputChannel> channels;
};

// The result as samples for a file, all rows at once; see ResultRows.
Samples TakeFromEffect(const Picture& input, const headless::WorldBuffer& given,
                       const headless::WorldBuffer& result, const OutputForm& form);

// Of the pixels that were clipped for the effect, how many it changed: they lose what was clipped.
std::int64_t CountClippedAndChanged(const Picture& input, const headless::WorldBuffer& given,
                                    const headless::WorldBuffer& result);

// Pixels that are not transparent in the result and that the file has no place for.
std::int64_t CountPaintedBeyondData(const Picture& input, const headless::WorldBuffer& result);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_EXCHANGE_H_
