// Tries a read that may crash in a child process.
#ifndef VITRELL_MEDIA_TRIAL_READING_H_
#define VITRELL_MEDIA_TRIAL_READING_H_

#include <functional>

namespace vitrell::media {

// Runs `read` in a fork of this process. Returns false if a signal ended the child; exceptions do
// not count as a crash. Also true if no process can be started, since then nothing can be tried.
bool SurvivesReading(const std::function<void()>& read);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_TRIAL_READING_H_
