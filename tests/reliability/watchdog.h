// Work with a bound on its time.
#ifndef VITRELL_RELIABILITY_WATCHDOG_H_
#define VITRELL_RELIABILITY_WATCHDOG_H_

#include <functional>
#include <string>

namespace vitrell::reliability {

// Several times what the slowest sanitizer needs.
inline constexpr int kSecondsToHang = 60;

// Runs the work on a thread of its own, so that a lock which the calling thread still holds is
// seen, and waits. Work that does not come to an end is named, and the process ends: nothing can be
// done about a thread that hangs.
void RunOnAnotherThread(const std::string& name, const std::function<void()>& work);

}  // namespace vitrell::reliability

#endif  // VITRELL_RELIABILITY_WATCHDOG_H_
