// Collecting messages.
#include "media/video_messages.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <mutex>

extern "C" {
#include <libavutil/error.h>
#include <libavutil/log.h>
}

namespace vitrell::media {
namespace {

constexpr std::size_t kMostMessages = 10;

std::mutex g_lock;
std::vector<std::string> g_messages;

// "[libx264 @ 0x55...] text" without the address, which differs from run to run.
std::string WithoutAddress(std::string line) {
  const std::size_t at = line.find(" @ 0x");
  const std::size_t close = line.find("] ", at == std::string::npos ? 0 : at);
  if (!line.starts_with('[') || at == std::string::npos || close == std::string::npos) return line;
  return line.substr(1, at - 1) + ": " + line.substr(close + 2);
}

void Collect(void* source, int level, const char* format, va_list values) {
  if (level > AV_LOG_ERROR) return;
  std::array<char, 1024> text{};
  int withPrefix = 1;
  av_log_format_line2(source, level, format, values, text.data(), static_cast<int>(text.size()),
                      &withPrefix);
  std::string line = text.data();
  while (!line.empty() && (line.back() == '\n' || line.back() == '.')) line.pop_back();
  line = WithoutAddress(line);
  const std::lock_guard<std::mutex> guard(g_lock);
  const bool known = std::find(g_messages.begin(), g_messages.end(), line) != g_messages.end();
  if (!line.empty() && !known && g_messages.size() < kMostMessages) g_messages.push_back(line);
}

}  // namespace

void CollectVideoMessages() { av_log_set_callback(Collect); }

std::vector<std::string> TakeVideoMessages() {
  const std::lock_guard<std::mutex> guard(g_lock);
  std::vector<std::string> taken;
  taken.swap(g_messages);
  return taken;
}

bool HasVideoMessage(std::string_view text) {
  const std::lock_guard<std::mutex> guard(g_lock);
  return std::any_of(g_messages.begin(), g_messages.end(), [&](const std::string& message) {
    return message.find(text) != std::string::npos;
  });
}

std::string VideoErrorText(int code) {
  std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
  av_strerror(code, text.data(), text.size());
  return text.data();
}

std::string VideoErrorCause(int code) {
  const std::string text = VideoErrorText(code);
  // The others follow from the first one.
  const std::vector<std::string> messages = TakeVideoMessages();
  return messages.empty() ? text : text + "; " + messages.front();
}

}  // namespace vitrell::media
