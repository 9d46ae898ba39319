// Reading that may end the process, tried in another one.
#ifndef VITRELL_MEDIA_TRIAL_READING_H_
#define VITRELL_MEDIA_TRIAL_READING_H_

#include <functional>

namespace vitrell::media {

// Runs `read` in a copy of this process, which then ends; whatever it throws counts as survived.
// False when a signal ended the copy. True also where the system gives no further process, because
// then nothing can be tried.
bool SurvivesReading(const std::function<void()>& read);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_TRIAL_READING_H_
