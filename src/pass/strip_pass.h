// The per-pixel pass of every stage whose pixels cost less a strip of lines at a time.
#ifndef VITRELL_PASS_STRIP_PASS_H_
#define VITRELL_PASS_STRIP_PASS_H_

#include <concepts>
#include <cstdint>

#include "host/host_api.h"
#include "pass/lazy_strips.h"

namespace vitrell {

// What a stage brings, as one object for one pass and one depth. Besides these three it holds the
// tables that were prepared before the pass and are only read while it runs. Both functions are
// called by any number of threads.
template <typename Stage>
concept StripStage = requires(Stage& stage, const typename Stage::Pixel& in,
                              typename Stage::Pixel* out, std::int32_t number) {
  // How many lines a strip has, and which.
  { Stage::kStripSize } -> std::convertible_to<std::int32_t>;
  { Stage::kStripLines } -> std::convertible_to<StripLines>;

  // Works out the lines from the first number up to the second; out is where the first one's first
  // pixel goes, and the rows are as far apart as the strips are wide. False when it cannot be done
  // now, with nothing lost.
  { stage.FillStrip(number, number, out) } -> std::same_as<bool>;

  // The definition: the pixel at layer position (x, y) by itself, for pixels outside the strips and
  // those whose strip another thread is at.
  { stage.StoreOnePixel(number, number, in, out) } -> std::same_as<void>;

  // Where a layer position lies in the strips.
  { stage.ColumnOf(number) } -> std::same_as<std::int32_t>;
  { stage.RowOf(number) } -> std::same_as<std::int32_t>;

  // Makes the stage's output of a pixel of a strip and the pass's input.
  { Stage::Publish(in, in, out) } -> std::same_as<void>;
};

// What most stages have: 8 rows or so of a picture whose origin is (0, 0), which hold the output.
template <typename PixelType, std::int32_t kRows>
struct StripsOfRows {
  using Pixel = PixelType;
  static constexpr std::int32_t kStripSize = kRows;
  static constexpr StripLines kStripLines = StripLines::kRows;

  static std::int32_t ColumnOf(std::int32_t x) { return x; }
  static std::int32_t RowOf(std::int32_t y) { return y; }
  static void Publish(const Pixel& stored, const Pixel& /*in*/, Pixel* out) { *out = stored; }
};

// A stage with its strips; the refcon of its callback. Without a Reset there are no strips, and
// every pixel is worked out by itself.
template <typename Stage>
struct StripPass {
  using Pixel = typename Stage::Pixel;

  Stage stage;
  LazyStrips<Pixel, Stage::kStripSize, Stage::kStripLines> strips;

  // What the stage's callback does.
  PF_Err Serve(std::int32_t x, std::int32_t y, const Pixel& in, Pixel* out) {
    static_assert(StripStage<Stage>);
    const Pixel* const stored = strips.ReadyPixel(stage.ColumnOf(x), stage.RowOf(y));
    if (stored == nullptr) [[unlikely]] {
      return ServeAfterMiss(x, y, in, out);
    }
    Stage::Publish(*stored, in, out);
    return PF_Err_NONE;
  }

 private:
  // A function of its own that the pass ends in, so that the quick way saves no registers.
  [[gnu::noinline]] PF_Err ServeAfterMiss(std::int32_t x, std::int32_t y, const Pixel& in,
                                          Pixel* out) {
    const Pixel* const stored =
        strips.PixelOrFill(stage.ColumnOf(x), stage.RowOf(y),
                           [this](std::int32_t firstLine, std::int32_t endLine, Pixel* pixels) {
                             return stage.FillStrip(firstLine, endLine, pixels);
                           });
    if (stored != nullptr) {
      Stage::Publish(*stored, in, out);
    } else {
      stage.StoreOnePixel(x, y, in, out);
    }
    return PF_Err_NONE;
  }
};

}  // namespace vitrell

#endif  // VITRELL_PASS_STRIP_PASS_H_
