// The per-pixel pass of the stages that compute their pixels in strips of lines.
#ifndef VITRELL_PASS_STRIP_PASS_H_
#define VITRELL_PASS_STRIP_PASS_H_

#include <concepts>
#include <cstdint>

#include "host/host_api.h"
#include "pass/lazy_strips.h"

namespace vitrell {

// What a stage supplies, as one object for one pass and one depth. The object also holds the tables
// that were prepared before the pass and are only read during it. Any number of threads call its
// functions.
template <typename Stage>
concept StripStage = requires(Stage& stage, const typename Stage::Pixel& in,
                              typename Stage::Pixel* out, std::int32_t number) {
  // The number of lines in a strip, and whether they are rows or columns.
  { Stage::kStripSize } -> std::convertible_to<std::int32_t>;
  { Stage::kStripLines } -> std::convertible_to<StripLines>;

  // Computes the lines from the first number up to, but not including, the second. out is the
  // address of the first line's first pixel; rows are one strip width apart, or as far as those
  // that the strips were given. False if it cannot be done now and has to be tried again.
  { stage.FillStrip(number, number, out) } -> std::same_as<bool>;

  // The definition: computes the pixel at layer position (x, y) alone. Used outside the strips and
  // while another thread is computing the pixel's strip.
  { stage.StoreOnePixel(number, number, in, out) } -> std::same_as<void>;

  // The position within the strips of a layer position.
  { stage.ColumnOf(number) } -> std::same_as<std::int32_t>;
  { stage.RowOf(number) } -> std::same_as<std::int32_t>;

  // Combines a strip's pixel and the pass's input pixel into the output pixel.
  { Stage::Publish(in, in, out) } -> std::same_as<void>;
};

// The common case: strips of kRows rows of an image with origin (0, 0), which hold the output
// itself.
template <typename PixelType, std::int32_t kRows>
struct StripsOfRows {
  using Pixel = PixelType;
  static constexpr std::int32_t kStripSize = kRows;
  static constexpr StripLines kStripLines = StripLines::kRows;

  static std::int32_t ColumnOf(std::int32_t x) { return x; }
  static std::int32_t RowOf(std::int32_t y) { return y; }
  static void Publish(const Pixel& stored, const Pixel& /*in*/, Pixel* out) { *out = stored; }
};

// A stage with its strips; the refcon of its callback. Unless strips.Reset() has been called there
// are none, and every pixel is computed alone.
template <typename Stage>
struct StripPass {
  using Pixel = typename Stage::Pixel;

  Stage stage;
  LazyStrips<Pixel, Stage::kStripSize, Stage::kStripLines> strips;

  // The body of the stage's callback.
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
  // Out of line and a tail call, so that the fast path above need not save registers.
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
