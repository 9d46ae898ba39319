// The one mutex of the process, which lets only one thread render at a time.
#ifndef VITRELL_BASE_GLOBAL_MUTEX_H_
#define VITRELL_BASE_GLOBAL_MUTEX_H_

namespace vitrell {

// A recursive mutex. All objects of this type refer to the same one, which needs no initialisation
// and is defined in the source file for the operating system, global_mutex_*.cpp.
class GlobalMutex {
 public:
  static void lock();    // NOLINT(readability-identifier-naming): what std::lock_guard calls.
  static void unlock();  // NOLINT(readability-identifier-naming)
};

}  // namespace vitrell

#endif  // VITRELL_BASE_GLOBAL_MUTEX_H_
