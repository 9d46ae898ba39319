// Which host's command the running thread works for.
#ifndef VITRELL_HEADLESS_CURRENT_HOST_H_
#define VITRELL_HEADLESS_CURRENT_HOST_H_

namespace vitrell::headless {

class HostState;

// Some host functions are told nothing of their caller; they find it here. Null on a thread that
// works for no host, such as one that an effect started by itself.
HostState* CurrentHost();

// Makes a host current on this thread for as long as the object lives.
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
