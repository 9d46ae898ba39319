// The host on whose behalf the current thread is running.
#ifndef VITRELL_HEADLESS_CURRENT_HOST_H_
#define VITRELL_HEADLESS_CURRENT_HOST_H_

namespace vitrell::headless {

class HostState;

// Some host callbacks receive no reference to their host and look it up here. Null on a thread that
// works for no host, such as one started by an effect.
HostState* CurrentHost();

// Makes a host current on this thread during the object's lifetime.
class CurrentHostScope {
 public:
  explicit CurrentHostScope(HostState* host);
  ~CurrentHostScope();
  CurrentHostScope(const CurrentHostScope&) = delete;
  CurrentHostScope& operator=(const CurrentHostScope&) = delete;

 private:
  HostState* previous_;
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_CURRENT_HOST_H_
