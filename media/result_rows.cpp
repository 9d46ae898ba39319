// Turning the effect's pixels and the file's samples into those of the output.
#include "media/result_rows.h"

#include <OpenImageIO/half.h>

#include <cstdint>
#include <memory>
#include <type_traits>
#include <variant>

#include "media/original_rows.h"
#include "media/pixel_taker.h"
#include "media/sample_maths.h"

namespace vitrell::media {
namespace {

template <typename Sample, typename Pixel, typename Out>
class RowTaker {
 public:
  RowTaker(const Picture& input, const std::vector<Sample>& samples,
           const headless::WorldBuffer& given, const headless::WorldBuffer& result,
           const OutputForm& form, const Window& window)
      : input_(input),
        originals_(input, samples, given),
        given_(given),
        result_(result),
        form_(form),
        seen_(input.Seen()),
        window_(window),
        taker_(input, form),
        plain_(input, form) {}

  void TakeRow(int y, Out* out) {
    const bool crossesSeen = y >= seen_.y && y < seen_.Bottom() && seen_.width > 0;
    const int left = crossesSeen ? seen_.x : window_.Right();
    const int right = crossesSeen ? seen_.Right() : window_.Right();
    out = TakeOutside(y, window_.x, left, out);
    out = TakeSeen(y, left, right, out);
    TakeOutside(y, right, window_.Right(), out);
  }

 private:
  Out* TakeSeen(int y, int begin, int end, Out* out) {
    if (begin >= end) return out;
    const Sample* file = originals_.At(begin, y);
    const Pixel* before = RowOf<Pixel>(given_, y);
    const Pixel* after = RowOf<Pixel>(result_, y);
    if constexpr (std::is_same_v<Sample, Out>) {
      if (plain_.Suits()) {
        for (int x = begin; x < end; ++x, file += input_.Channels()) {
          out = plain_.Take(file, before[x], after[x], out);
        }
        return out;
      }
    }
    for (int x = begin; x < end; ++x) {
      taker_.Take(file, before[x], after[x], out);
      file += input_.Channels();
      out += form_.channels.size();
    }
    return out;
  }

  // Pixels that only the effect has, or only the file.
  Out* TakeOutside(int y, int begin, int end, Out* out) {
    for (int x = begin; x < end; ++x, out += form_.channels.size()) {
      if (form_.wholeFrame) {
        taker_.TakeNew(RowOf<Pixel>(result_, y)[x], out);
      } else {
        taker_.TakeUnseen(originals_.At(x, y), out);
      }
    }
    return out;
  }

  const Picture& input_;
  OriginalRows<Sample, Pixel> originals_;
  const headless::WorldBuffer& given_;
  const headless::WorldBuffer& result_;
  const OutputForm& form_;
  const Window seen_;
  const Window window_;
  const PixelTaker<Sample, Pixel, Out> taker_;
  const PlainTaker<Sample, Pixel> plain_;
};

using TakeRow = std::function<void(int row, void* out)>;

template <typename Sample, typename Pixel, typename Out>
TakeRow MakeTaker(const Picture& input, const std::vector<Sample>& samples,
                  const headless::WorldBuffer& given, const headless::WorldBuffer& result,
                  const OutputForm& form, const Window& window) {
  const auto taker =
      std::make_shared<RowTaker<Sample, Pixel, Out>>(input, samples, given, result, form, window);
  return [taker, top = window.y](int row, void* out) {
    taker->TakeRow(top + row, static_cast<Out*>(out));
  };
}

template <typename Sample, typename Pixel, typename... More>
TakeRow MakeTakerTo(SampleType type, const Picture& input, const std::vector<Sample>& samples,
                    const More&... more) {
  switch (type) {
    case SampleType::kByte:
      return MakeTaker<Sample, Pixel, std::uint8_t>(input, samples, more...);
    case SampleType::kWord:
      return MakeTaker<Sample, Pixel, std::uint16_t>(input, samples, more...);
    case SampleType::kHalf:
      return MakeTaker<Sample, Pixel, half>(input, samples, more...);
    case SampleType::kFloat:
      break;
  }
  return MakeTaker<Sample, Pixel, float>(input, samples, more...);
}

OIIO::TypeDesc TypeOf(SampleType type) {
  switch (type) {
    case SampleType::kByte:
      return OIIO::TypeDesc::UINT8;
    case SampleType::kWord:
      return OIIO::TypeDesc::UINT16;
    case SampleType::kHalf:
      return OIIO::TypeDesc::HALF;
    case SampleType::kFloat:
      break;
  }
  return OIIO::TypeDesc::FLOAT;
}

}  // namespace

ResultRows::ResultRows(const Picture& input, const headless::WorldBuffer& given,
                       const headless::WorldBuffer& result, const OutputForm& form)
    : window_(form.wholeFrame ? Window{0, 0, input.Width(), input.Height()} : input.Data()),
      type_(form.type),
      rowBytes_(static_cast<std::size_t>(window_.width) * form.channels.size() *
                TypeOf(form.type).size()),
      takeRow_(std::visit(
          [&](const auto& samples) {
            return result.Deep() ? MakeTakerTo<typename std::decay_t<decltype(samples)>::value_type,
                                               PF_Pixel16>(form.type, input, samples, given, result,
                                                           form, window_)
                                 : MakeTakerTo<typename std::decay_t<decltype(samples)>::value_type,
                                               PF_Pixel>(form.type, input, samples, given, result,
                                                         form, window_);
          },
          input.samples)) {}

OIIO::TypeDesc ResultRows::Type() const { return TypeOf(type_); }

const void* ResultRows::Take(int begin, int end) {
  rows_.resize(rowBytes_ * static_cast<std::size_t>(end - begin));
  for (int row = begin; row < end; ++row) {
    takeRow_(row, rows_.data() + rowBytes_ * static_cast<std::size_t>(row - begin));
  }
  return rows_.data();
}

}  // namespace vitrell::media
