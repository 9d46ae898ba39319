// The thread-local pointer to the current host.
#include "headless/current_host.h"

namespace vitrell::headless {
namespace {

thread_local HostState* g_currentHost = nullptr;

}  // namespace

HostState* CurrentHost() { return g_currentHost; }

CurrentHostScope::CurrentHostScope(HostState* host) : previous_(g_currentHost) {
  g_currentHost = host;
}

CurrentHostScope::~CurrentHostScope() { g_currentHost = previous_; }

}  // namespace vitrell::headless
