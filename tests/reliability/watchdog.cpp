// Runs work with a time limit.
#include "reliability/watchdog.h"

#include <chrono>
#include <cstdlib>
#include <future>
#include <iostream>

namespace vitrell::reliability {

void RunOnAnotherThread(const std::string& name, const std::function<void()>& work) {
  std::future<void> done = std::async(std::launch::async, work);
  if (done.wait_for(std::chrono::seconds(kSecondsToHang)) != std::future_status::ready) {
    std::cerr << "Hangs: " << name << std::endl;
    std::_Exit(EXIT_FAILURE);
  }
  done.get();
}

}  // namespace vitrell::reliability
