// Sharing memory.
#include "media/shared_frame.h"

#include <sys/mman.h>

#include <array>
#include <cstdint>
#include <new>
#include <utility>

#include "media/failure.h"
#include "media/pixel_formats.h"
#include "media/video_messages.h"

extern "C" {
#include <libavutil/imgutils.h>
}

namespace vitrell::media {
namespace {

// Of rows and planes, for the widest vectors of the libraries.
constexpr std::size_t kAlignment = 64;
// Four floats a pixel in planes of their own: no format takes more, but for a table of colours.
constexpr AVPixelFormat kLargestFormat = AV_PIX_FMT_GBRAPF32;
constexpr std::size_t kTableOfColours = 1024;

std::size_t Aligned(std::size_t bytes) {
  return (bytes + kAlignment - 1) / kAlignment * kAlignment;
}

struct Layout {
  std::array<int, 4> rowBytes{};
  std::array<std::size_t, 4> planeBytes{};  // 0 behind the last plane
  std::size_t bytes = 0;
};

// The library's own function for this ends at 2 GB.
Layout LayoutOf(AVPixelFormat format, int width, int height) {
  Layout layout;
  std::array<std::ptrdiff_t, 4> rows{};
  if (av_image_fill_linesizes(layout.rowBytes.data(), format, width) < 0) throw std::bad_alloc();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    layout.rowBytes[i] = static_cast<int>(Aligned(static_cast<std::size_t>(layout.rowBytes[i])));
    rows[i] = layout.rowBytes[i];
  }
  if (av_image_fill_plane_sizes(layout.planeBytes.data(), format, height, rows.data()) < 0) {
    throw std::bad_alloc();
  }
  for (const std::size_t bytes : layout.planeBytes) layout.bytes += Aligned(bytes);
  return layout;
}

void KeepRoom(void* /*owner*/, std::uint8_t* /*data*/) {}

}  // namespace

FrameForm RgbForm(bool deep) { return {deep ? kRgb16 : kRgb8, {}}; }

SharedFrame::SharedFrame(int width, int height)
    : width_(width),
      height_(height),
      bytes_(LayoutOf(kLargestFormat, width, height).bytes + kTableOfColours) {
  void* room = ::mmap(nullptr, bytes_, PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (room == MAP_FAILED) throw std::bad_alloc();
  room_ = static_cast<std::byte*>(room);
}

SharedFrame::~SharedFrame() {
  if (room_ != nullptr) ::munmap(room_, bytes_);
}

SharedFrame::SharedFrame(SharedFrame&& other) noexcept
    : width_(other.width_),
      height_(other.height_),
      bytes_(other.bytes_),
      room_(std::exchange(other.room_, nullptr)) {}

FrameForm SharedFrame::Put(const AVFrame& frame, const std::filesystem::path& file) const {
  const FrameForm form{static_cast<AVPixelFormat>(frame.format), ColoursOf(frame)};
  if (const int error = av_frame_copy(As(form).get(), &frame); error < 0) {
    throw Failure(kFailed, file.string() + ": a frame cannot be copied (" + VideoErrorCause(error) +
                               "). Convert the video to another pixel format.");
  }
  return form;
}

FrameHandle SharedFrame::As(const FrameForm& form) const {
  const Layout layout = LayoutOf(form.format, width_, height_);
  if (layout.bytes > bytes_) throw std::bad_alloc();
  FrameHandle frame = MakeFrame();
  frame->width = width_;
  frame->height = height_;
  frame->format = form.format;
  SetColours(form.colours, *frame);
  auto* plane = reinterpret_cast<std::uint8_t*>(room_);
  // Without a counted buffer the libraries would copy the pixels before they touch them.
  frame->buf[0] = av_buffer_create(plane, bytes_, KeepRoom, nullptr, 0);
  if (frame->buf[0] == nullptr) throw std::bad_alloc();
  for (std::size_t i = 0; i < layout.planeBytes.size() && layout.planeBytes[i] > 0; ++i) {
    frame->data[i] = plane;
    frame->linesize[i] = layout.rowBytes[i];
    plane += Aligned(layout.planeBytes[i]);
  }
  return frame;
}

}  // namespace vitrell::media
