// Memory use of the process, from /proc/self, and the share of the host's worlds.
#include "bench/process_memory.h"

#include <malloc.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

namespace vitrell::bench {
namespace {

// The value of a line of /proc/self/status, in bytes.
double StatusBytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind(name + ":", 0) != 0) continue;
    return std::stod(line.substr(name.size() + 1)) * 1024;
  }
  throw std::runtime_error("/proc/self/status does not tell " + name);
}

}  // namespace

double BeginPeakBytes() {
  malloc_trim(0);
  std::ofstream request("/proc/self/clear_refs");
  request << 5 << std::flush;  // 5 resets the peak.
  if (!request) throw std::runtime_error("/proc/self/clear_refs cannot be written");
  return StatusBytes("VmRSS");
}

double PeakBytes() { return StatusBytes("VmHWM"); }

double MostWorldBytes(const std::vector<headless::HostCall>& calls, bool deep) {
  std::map<std::string, double> alive;
  double now = 0;
  double most = 0;
  for (const headless::HostCall& call : calls) {
    std::istringstream words(call.text);  // new_world world1 480x270 flags 0
    std::string verb;
    std::string world;
    double width = 0;
    double height = 0;
    char times = 0;
    words >> verb >> world >> width >> times >> height;
    if (call.kind == headless::CallKind::kNewWorld) {
      alive[world] = width * height * (deep ? 8 : 4);
      now += alive[world];
    } else if (call.kind == headless::CallKind::kDisposeWorld) {
      now -= alive[world];
    }
    most = std::max(most, now);
  }
  return most;
}

}  // namespace vitrell::bench
