// Runs work with a time limit.
#ifndef VITRELL_RELIABILITY_WATCHDOG_H_
#define VITRELL_RELIABILITY_WATCHDOG_H_

#include <functional>
#include <string>

namespace vitrell::reliability {

// Several times what the slowest sanitizer needs.
inline constexpr int kSecondsToHang = 60;

// Runs the work on a separate thread, so that a lock still held by the calling thread is detected,
// and waits. If the work exceeds the limit, it is named and the process ends, since a hanging
// thread cannot be stopped.
void RunOnAnotherThread(const std::string& name, const std::function<void()>& work);

}  // namespace vitrell::reliability

#endif  // VITRELL_RELIABILITY_WATCHDOG_H_
