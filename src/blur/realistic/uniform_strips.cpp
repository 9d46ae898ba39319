// The uniform realistic blur in strips: as many rows as there are vector lanes advance together.
#include "blur/realistic/uniform_strips.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/numeric.h"
#include "base/pixel_access.h"
#include "blur/realistic/bright_columns.h"
#include "blur/realistic/tap_sums.h"
#include "host/world.h"

namespace vitrell {
namespace {

// The average colours of all lanes, not yet truncated; 0 if the total weight is 0.
struct LaneColors {
  alignas(64) float red[kMaxLanes];
  alignas(64) float green[kMaxLanes];
  alignas(64) float blue[kMaxLanes];

  void Divide(const LaneSums& sums, int lanes) {
    for (int i = 0; i < lanes; ++i) {
      const float weight = sums.weight[i];
      red[i] = weight == 0.0f ? 0.0f : sums.red[i] / weight;
      green[i] = weight == 0.0f ? 0.0f : sums.green[i] / weight;
      blue[i] = weight == 0.0f ? 0.0f : sums.blue[i] / weight;
    }
  }
};

template <typename Pixel>
class StripBlur {
 public:
  StripBlur(const UniformTables& pass, const IrisEngine& engine)
      : pass_(pass),
        engine_(engine),
        top_(pass.input->extent_hint.top),
        left_(pass.input->extent_hint.left) {}

  // Converts the difference points to taps, and finds where each row of the kernel begins among
  // them.
  [[nodiscard]] bool Prepare() {
    const auto rows = static_cast<std::size_t>(pass_.kernel.rowCount);
    if (!taps_.Allocate(pass_.points.size()) || !rowStart_.Allocate(rows + 1) ||
        !bright_.Prepare(pass_.map)) {
      return false;
    }
    std::size_t i = 0;
    for (std::size_t row = 0; row <= rows; ++row) {
      rowStart_[row] = i;
      const std::int64_t dy = pass_.kernel.firstDy + static_cast<std::int64_t>(row);
      for (; i < taps_.size() && pass_.points[i].y == dy; ++i) {
        const Weight_Pt& point = pass_.points[i];
        taps_[i] = {point.x * pass_.map.columnStride() + point.y, point.x, point.weight};
      }
    }
    return true;
  }

  void Run() {
    for (std::int32_t y = 0; y < pass_.output->height; y += engine_.lanes) {
      BeginStrip(y);
      for (std::int32_t x = 0; x < pass_.output->width; x += kBlockColumns) {
        const std::int32_t columns = std::min(kBlockColumns, pass_.output->width - x);
        LoadBlock(y, x, columns);
        for (std::int32_t i = 0; i < columns; ++i) {
          Advance(x + i - left_);
          StoreColumn(i);
        }
        StoreBlock(y, x, columns);
      }
    }
  }

 private:
  void BeginStrip(std::int32_t y) {
    const IrisKernel& kernel = pass_.kernel;
    row_ = y - top_;
    liveLanes_ = static_cast<int>(
        std::min<std::int64_t>(engine_.lanes, std::int64_t{pass_.output->height} - y));
    firstDy_ = -row_ - engine_.lanes + 1;
    lastDy_ = pass_.map.height() - 1 - row_;
    const auto rowIndex = [&](std::int64_t dy) {
      return rowStart_[static_cast<std::size_t>(
          std::clamp<std::int64_t>(dy - kernel.firstDy, 0, kernel.rowCount))];
    };
    firstTap_ = taps_.data() + rowIndex(firstDy_);
    endTap_ = taps_.data() + std::max(rowIndex(firstDy_), rowIndex(lastDy_ + 1));
    bright_.MoveTo(row_ + kernel.firstDy,
                   row_ + engine_.lanes + kernel.firstDy + kernel.rowCount - 1);
    std::fill_n(afresh_, kMaxLanes, true);
    afreshLanes_ = liveLanes_;
  }

  // Moves the window of every lane to the given column of the map.
  void Advance(std::int64_t column) {
    const HighlightMap& map = pass_.map;
    const LaneView view = {map.origin(), row_ + column * map.columnStride(), map.planeStride(),
                           map.columnStride(), 1};
    // Columns without any weight within reach of the strip are skipped: they change no sum.
    const std::int64_t radius = pass_.radius;
    const LaneWindow window = {bright_.FirstFrom(column - radius - 1) - column,
                               bright_.LastUpTo(column + radius) - column, firstDy_, lastDy_};
    if (afreshLanes_ == liveLanes_) {
      engine_.sumKernel(view, window, pass_.kernel, &sums_);
      return;
    }
    engine_.addTaps(view, window, firstTap_, endTap_, &sums_);
    if (afreshLanes_ > 0) {
      engine_.sumKernel(view, window, pass_.kernel, &fresh_);
      for (int lane = 0; lane < liveLanes_; ++lane) {
        if (afresh_[lane]) {
          sums_.SetLane(lane, fresh_);
        }
      }
    }
  }

  // Loads the input's pixels, whose alpha the output gets; zeros where there are none.
  void LoadBlock(std::int32_t y, std::int32_t x, std::int32_t columns) {
    const PF_LayerDef& input = *pass_.input;
    for (int lane = 0; lane < liveLanes_; ++lane) {
      const Pixel* const first = GetPointerFromDataP<Pixel>(&input, y + lane, x, 0);
      const Pixel* const last = GetPointerFromDataP<Pixel>(&input, y + lane, x + columns - 1, 0);
      for (std::int32_t i = 0; i < columns; ++i) {
        block_[lane][i] = first != nullptr && last != nullptr
                              ? first[i]
                              : GetPointerFromData<Pixel>(&input, y + lane, x + i, 0);
      }
    }
  }

  void StoreBlock(std::int32_t y, std::int32_t x, std::int32_t columns) const {
    for (int lane = 0; lane < liveLanes_; ++lane) {
      std::copy_n(block_[lane], columns, StoredPixel<Pixel>(pass_.output, y + lane, x));
    }
  }

  // Sets one pixel of every live lane. A lane whose pixel is all zero restarts its sums.
  void StoreColumn(std::int32_t column) {
    using Channel = ChannelOf<Pixel>;
    colors_.Divide(sums_, engine_.lanes);
    afreshLanes_ = 0;
    for (int lane = 0; lane < liveLanes_; ++lane) {
      Pixel pixel = block_[lane][column];
      pixel.red = TruncateToChannel<Channel>(colors_.red[lane]);
      pixel.green = TruncateToChannel<Channel>(colors_.green[lane]);
      pixel.blue = TruncateToChannel<Channel>(colors_.blue[lane]);
      block_[lane][column] = pixel;
      afresh_[lane] = IsTransparentBlack(pixel);
      afreshLanes_ += afresh_[lane] ? 1 : 0;
    }
  }

  // Columns collected before they are stored, so that whole cache lines are written.
  static constexpr std::int32_t kBlockColumns = 16;

  const UniformTables& pass_;
  const IrisEngine& engine_;
  const std::int64_t top_;
  const std::int64_t left_;
  Buffer<LaneTap> taps_;
  Buffer<std::size_t> rowStart_;
  BrightColumns bright_;

  // The current strip: lane 0's row of the map, the offsets at which some lane has a row of the
  // map, and the taps of those rows.
  std::int64_t row_ = 0;
  int liveLanes_ = 0;
  std::int64_t firstDy_ = 0;
  std::int64_t lastDy_ = 0;
  const LaneTap* firstTap_ = nullptr;
  const LaneTap* endTap_ = nullptr;

  // The current column.
  LaneSums sums_ = {};
  LaneSums fresh_ = {};
  LaneColors colors_ = {};
  Pixel block_[kMaxLanes][kBlockColumns] = {};
  bool afresh_[kMaxLanes] = {};
  int afreshLanes_ = 0;
};

template <typename Pixel>
PF_Err Blur(const UniformTables& pass, const IrisEngine& engine) {
  StripBlur<Pixel> blur(pass, engine);
  if (!blur.Prepare()) {
    return PF_Err_OUT_OF_MEMORY;
  }
  blur.Run();
  return PF_Err_NONE;
}

}  // namespace

PF_Err BlurStrips(const UniformTables& pass, const IrisEngine& engine) {
  return IsDeep(*pass.output) ? Blur<PF_Pixel16>(pass, engine) : Blur<PF_Pixel>(pass, engine);
}

}  // namespace vitrell
