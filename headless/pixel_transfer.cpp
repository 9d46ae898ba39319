// Row-wise transfers between worlds of either depth.
#include "headless/pixel_transfer.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <vector>

namespace vitrell::headless {
namespace {

template <typename Pixel>
Pixel* RowOf(const PixelView& world, A_long y) {
  return reinterpret_cast<Pixel*>(static_cast<std::byte*>(world.data) +
                                  static_cast<std::ptrdiff_t>(y) * world.rowbytes);
}

void StorePixel(const PF_Pixel& in, PF_Pixel& out) { out = in; }
void StorePixel(const PF_Pixel16& in, PF_Pixel16& out) { out = in; }
void StorePixel(const PF_Pixel& in, PF_Pixel16& out) {
  out = {WidenChannel(in.alpha), WidenChannel(in.red), WidenChannel(in.green),
         WidenChannel(in.blue)};
}
void StorePixel(const PF_Pixel16& in, PF_Pixel& out) {
  out = {NarrowChannel(in.alpha), NarrowChannel(in.red), NarrowChannel(in.green),
         NarrowChannel(in.blue)};
}

struct Transfer {
  PixelView source;
  PixelView destination;
  PF_LRect from;
  PF_LRect to;

  bool SameSize() const {
    return from.right - from.left == to.right - to.left &&
           from.bottom - from.top == to.bottom - to.top;
  }
};

// The source position whose pixel centre is nearest to that of a destination position.
A_long Nearest(A_long position, A_long toBegin, A_long toEnd, A_long fromBegin, A_long fromEnd) {
  const std::int64_t doubled = 2 * (std::int64_t{position} - toBegin) + 1;
  const std::int64_t scaled =
      doubled * (std::int64_t{fromEnd} - fromBegin) / (2 * (std::int64_t{toEnd} - toBegin));
  return fromBegin + static_cast<A_long>(scaled);
}

template <typename In, typename Out>
void TransferRow(const Transfer& transfer, const std::vector<A_long>& columns, A_long y) {
  const A_long sourceY =
      Nearest(y, transfer.to.top, transfer.to.bottom, transfer.from.top, transfer.from.bottom);
  if (sourceY < 0 || sourceY >= transfer.source.height) return;
  const In* in = RowOf<const In>(transfer.source, sourceY);
  Out* out = RowOf<Out>(transfer.destination, y);
  const A_long first = std::max(transfer.to.left, 0);
  const auto count = static_cast<A_long>(columns.size());
  if constexpr (std::is_same_v<In, Out>) {
    const bool straight = transfer.SameSize() && count > 0 && columns.front() >= 0 &&
                          columns.back() < transfer.source.width;
    if (straight) {
      std::memmove(out + first, in + columns.front(), static_cast<std::size_t>(count) * sizeof(In));
      return;
    }
  }
  for (A_long i = 0; i < count; ++i) {
    const A_long sourceX = columns[static_cast<std::size_t>(i)];
    if (sourceX >= 0 && sourceX < transfer.source.width) StorePixel(in[sourceX], out[first + i]);
  }
}

using RowFunction = void (*)(const Transfer&, const std::vector<A_long>&, A_long);

RowFunction ChooseRowFunction(bool sourceDeep, bool destinationDeep) {
  if (sourceDeep) {
    return destinationDeep ? TransferRow<PF_Pixel16, PF_Pixel16>
                           : TransferRow<PF_Pixel16, PF_Pixel>;
  }
  return destinationDeep ? TransferRow<PF_Pixel, PF_Pixel16> : TransferRow<PF_Pixel, PF_Pixel>;
}

void RunTransfer(const Transfer& transfer, ThreadPool& pool, int threads) {
  const PF_LRect& to = transfer.to;
  const PF_LRect& from = transfer.from;
  if (to.right <= to.left || to.bottom <= to.top) return;
  if (from.right <= from.left || from.bottom <= from.top) return;
  std::vector<A_long> columns;
  for (A_long x = std::max(to.left, 0); x < std::min(to.right, transfer.destination.width); ++x) {
    columns.push_back(Nearest(x, to.left, to.right, from.left, from.right));
  }
  const A_long top = std::max(to.top, 0);
  const A_long bottom = std::min(to.bottom, transfer.destination.height);
  const RowFunction row = ChooseRowFunction(transfer.source.deep, transfer.destination.deep);
  pool.Run(threads, [&](int worker) {
    const std::int64_t rows = std::max(bottom - top, 0);
    const auto begin = top + static_cast<A_long>(rows * worker / threads);
    const auto end = top + static_cast<A_long>(rows * (worker + 1) / threads);
    for (A_long y = begin; y < end; ++y) row(transfer, columns, y);
  });
}

PF_LRect WholeOr(const PF_LRect* rect, const PixelView& world) {
  return rect != nullptr ? *rect : PF_LRect{0, 0, world.width, world.height};
}

bool SameRect(const PF_LRect& a, const PF_LRect& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

template <typename Pixel>
void FillRect(const PixelView& world, const Pixel& color, const PF_LRect* rect) {
  const PF_LRect area = WholeOr(rect, world);
  const A_long left = std::max(area.left, 0);
  const A_long right = std::min(area.right, world.width);
  for (A_long y = std::max(area.top, 0); y < std::min(area.bottom, world.height); ++y) {
    Pixel* row = RowOf<Pixel>(world, y);
    if (right > left) std::fill(row + left, row + right, color);
  }
}

}  // namespace

A_u_short WidenChannel(A_u_char value) {
  return static_cast<A_u_short>((value * PF_MAX_CHAN16 + PF_MAX_CHAN8 / 2) / PF_MAX_CHAN8);
}

A_u_char NarrowChannel(A_u_short value) {
  const A_long level = (value * PF_MAX_CHAN8 + PF_MAX_CHAN16 / 2) / PF_MAX_CHAN16;
  return static_cast<A_u_char>(std::min(level, PF_MAX_CHAN8));
}

void CopyPixels(const PixelView& source, const PixelView& destination, const PF_LRect* sourceRect,
                const PF_LRect* destinationRect, ThreadPool& pool, int threads) {
  Transfer transfer{source, destination, WholeOr(sourceRect, source),
                    WholeOr(destinationRect, destination)};
  std::vector<std::byte> snapshot;
  if (source.data == destination.data) {
    if (SameRect(transfer.from, transfer.to)) return;
    // Overlapping rectangles of one world are read from a copy, so that no pixel is read after it
    // was written.
    const auto* first = static_cast<const std::byte*>(source.data);
    const std::size_t pixelBytes = source.deep ? sizeof(PF_Pixel16) : sizeof(PF_Pixel);
    const std::size_t bytes = source.height == 0
                                  ? 0
                                  : static_cast<std::size_t>(source.rowbytes) *
                                            static_cast<std::size_t>(source.height - 1) +
                                        static_cast<std::size_t>(source.width) * pixelBytes;
    snapshot.assign(first, first + bytes);
    transfer.source.data = snapshot.data();
  }
  RunTransfer(transfer, pool, threads);
}

void FillPixels(const PixelView& world, const PF_Pixel& color, const PF_LRect* rect) {
  FillRect(world, color, rect);
}

void FillPixels(const PixelView& world, const PF_Pixel16& color, const PF_LRect* rect) {
  FillRect(world, color, rect);
}

}  // namespace vitrell::headless
