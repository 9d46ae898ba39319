// Callbacks for the libraries' input and output.
#include "media/video_io.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <string_view>

#include "media/failure.h"
#include "media/output_file.h"
#include "media/standard_streams.h"

extern "C" {
#include <libavutil/error.h>
#include <libavutil/mem.h>
}

namespace vitrell::media {
namespace {

constexpr int kBuffer = 1 << 18;
// How long a look at a silent pipe lasts before `stop` is looked at again.
constexpr int kPatienceMs = 100;

uint8_t* MakeBuffer() {
  auto* buffer = static_cast<uint8_t*>(av_malloc(kBuffer));
  if (buffer == nullptr) throw std::bad_alloc();
  return buffer;
}

void FreeContext(AVIOContext*& context) {
  if (context == nullptr) return;
  // The library may have put another buffer in the place of the first one.
  av_freep(&context->buffer);
  avio_context_free(&context);
}

}  // namespace

VideoPipe::VideoPipe(const std::atomic<bool>* stop)
    : stop_(stop),
      context_(avio_alloc_context(MakeBuffer(), kBuffer, 0, this, Read, nullptr, nullptr)) {
  if (context_ == nullptr) throw std::bad_alloc();
}

VideoPipe::~VideoPipe() { FreeContext(context_); }

int VideoPipe::Read(void* pipe, uint8_t* buffer, int size) {
  auto& self = *static_cast<VideoPipe*>(pipe);
  const std::string_view head = HeadOfStandardInput();
  if (self.headTaken_ < head.size()) {
    const std::size_t count =
        std::min(head.size() - self.headTaken_, static_cast<std::size_t>(size));
    std::copy_n(head.data() + self.headTaken_, count, buffer);
    self.headTaken_ += count;
    return static_cast<int>(count);
  }
  while (true) {
    if (self.stop_ != nullptr && *self.stop_) return AVERROR_EXIT;
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (::poll(&input, 1, kPatienceMs) == 0) continue;
    const ssize_t count = ::read(STDIN_FILENO, buffer, static_cast<std::size_t>(size));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return AVERROR(errno);
    return count == 0 ? AVERROR_EOF : static_cast<int>(count);
  }
}

VideoSink::VideoSink(const std::filesystem::path& file)
    : isStandardOutput_(IsStandardStream(file)) {
  file_ = isStandardOutput_ ? STDOUT_FILENO : ::open(file.c_str(), O_RDWR | O_TRUNC | O_CLOEXEC);
  if (file_ < 0) {
    throw Failure(KindOfError(errno), file.string() + ": cannot be opened for writing (" +
                                          LastSystemError() + "). Choose another folder.");
  }
  context_ = avio_alloc_context(MakeBuffer(), kBuffer, 1, this, nullptr, Write,
                                isStandardOutput_ ? nullptr : Seek);
  if (context_ == nullptr) throw std::bad_alloc();
}

VideoSink::~VideoSink() {
  FreeContext(context_);
  if (file_ >= 0 && !isStandardOutput_) ::close(file_);
}

void VideoSink::Close() {
  avio_flush(context_);
  if (isStandardOutput_) return;
  if (::close(file_) != 0 && firstError_ == 0) firstError_ = errno;
  file_ = -1;
}

int VideoSink::Write(void* sink, uint8_t* bytes, int size) {
  auto& self = *static_cast<VideoSink*>(sink);
  if (WriteAll(self.file_,
               {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size)})) {
    return size;
  }
  if (self.firstError_ == 0) self.firstError_ = errno;
  return AVERROR(errno);
}

std::int64_t VideoSink::Seek(void* sink, std::int64_t offset, int whence) {
  const auto& self = *static_cast<VideoSink*>(sink);
  if ((whence & AVSEEK_SIZE) != 0) return AVERROR(ENOSYS);
  const off_t place = ::lseek(self.file_, offset, whence & ~AVSEEK_FORCE);
  return place < 0 ? AVERROR(errno) : place;
}

}  // namespace vitrell::media
