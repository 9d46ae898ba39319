// The one mutex of the process, by which renders exclude each other.
#ifndef VITRELL_BASE_GLOBAL_MUTEX_H_
#define VITRELL_BASE_GLOBAL_MUTEX_H_

namespace vitrell {

// A thread that holds it may lock it again and unlocks it as often. All objects stand for the same
// mutex, which needs no set-up; it lies in the source file of the system, global_mutex_*.cpp.
class GlobalMutex {
 public:
  void lock();    // NOLINT(readability-identifier-naming): what std::lock_guard calls.
  void unlock();  // NOLINT(readability-identifier-naming)
};

}  // namespace vitrell

#endif  // VITRELL_BASE_GLOBAL_MUTEX_H_
