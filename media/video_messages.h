// What FFmpeg's libraries say, kept from the terminal.
#ifndef VITRELL_MEDIA_VIDEO_MESSAGES_H_
#define VITRELL_MEDIA_VIDEO_MESSAGES_H_

#include <string>
#include <string_view>
#include <vector>

namespace vitrell::media {

// From now on errors that the libraries would print are collected, and everything less is dropped.
void CollectVideoMessages();

// The errors collected since the last call, each once and "codec or format: message", at most 10.
// May be called on any thread.
std::vector<std::string> TakeVideoMessages();

// Whether one of them, not yet taken, holds this text.
bool HasVideoMessage(std::string_view text);

// What an error code of the libraries means.
std::string VideoErrorText(int code);

// The same, with the first of what the libraries said meanwhile, which is often the real cause; on
// one line and without a full stop. All of it counts as taken.
std::string VideoErrorCause(int code);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_MESSAGES_H_
