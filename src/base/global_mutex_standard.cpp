// The mutex on systems whose standard library has a usable one.
#include <mutex>

#include "base/global_mutex.h"

namespace vitrell {
namespace {

std::recursive_mutex g_mutex;

}  // namespace

void GlobalMutex::lock() { g_mutex.lock(); }

void GlobalMutex::unlock() { g_mutex.unlock(); }

}  // namespace vitrell
