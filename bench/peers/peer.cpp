// Shared by the peer programs: command line, image files, clock and output.
#include "bench/peers/peer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <exception>
#include <numbers>
#include <stdexcept>

namespace vitrell::peers {
namespace {

constexpr double kEnoughMs = 800;
constexpr std::size_t kFewestRuns = 3;
constexpr std::size_t kMostRuns = 9;

double ProcessMs() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

double TimedMs(const std::function<void()>& run) {
  const double start = ProcessMs();
  run();
  return ProcessMs() - start;
}

}  // namespace

std::vector<float> PentagonKernel(int radiusPx) {
  const int size = 2 * radiusPx + 1;
  const double apothem = radiusPx * std::cos(std::numbers::pi / 5);
  std::vector<float> weights;
  double sum = 0;
  for (int y = -radiusPx; y <= radiusPx; ++y) {
    for (int x = -radiusPx; x <= radiusPx; ++x) {
      bool inside = true;
      for (int side = 0; side < 5; ++side) {
        const double angle = (2 * side + 1) * std::numbers::pi / 5 - std::numbers::pi / 2;
        inside = inside && x * std::cos(angle) + y * std::sin(angle) <= apothem;
      }
      weights.push_back(inside ? 1.0F : 0.0F);
      sum += inside ? 1 : 0;
    }
  }
  for (float& weight : weights) weight = static_cast<float>(weight / sum);
  return static_cast<int>(weights.size()) == size * size ? weights : std::vector<float>{};
}

std::vector<std::uint8_t> SoftCircle(int width, int height) {
  std::vector<std::uint8_t> map;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double distance = std::hypot(x - width / 2, y - height / 2) / (height / 2.0);
      const double m = 0.5 + 0.5 * std::cos(std::numbers::pi * std::min(distance, 1.0));
      map.push_back(static_cast<std::uint8_t>(255 * m + 0.5));
    }
  }
  return map;
}

Peer::Peer(const char* name, int argc, char** argv) : name_(name) {
  std::string path;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--quick") {
      quick_ = true;
    } else if (word == "--write" && i + 1 < argc) {
      folder_ = argv[++i];
    } else if (word == "--only" && i + 1 < argc) {
      only_ = argv[++i];
    } else if (path.empty() && word.rfind("--", 0) != 0) {
      path = word;
    } else {
      throw std::runtime_error("wrong argument: " + word);
    }
  }
  if (path.empty()) {
    throw std::runtime_error("usage: PICTURE [--quick] [--write FOLDER] [--only TEXT]");
  }
  input_ = bench::ReadPicture8(path);
}

Picture8 Peer::SameSize() const {
  return {input_.width, input_.height, std::vector<std::uint8_t>(input_.rgba.size())};
}

void Peer::Measure(const std::string& caseName, const std::function<void()>& run,
                   const std::function<Picture8()>& result) const {
  const std::string name = name_ + "/" + caseName;
  if (name.find(only_) == std::string::npos) return;
  run();
  std::vector<double> times;
  double total = 0;
  while (times.size() < kFewestRuns || (times.size() < kMostRuns && total < kEnoughMs)) {
    times.push_back(TimedMs(run));
    total += times.back();
    if (quick_) break;
  }
  const Picture8 picture = result();
  // An operation without effect must not be timed.
  if (picture.rgba == input_.rgba) throw std::runtime_error(name + " left the picture as it was");
  std::sort(times.begin(), times.end());
  std::printf("%s\t%.3f\n", name.c_str(), times[times.size() / 2]);
  std::fflush(stdout);
  if (!folder_.empty()) {
    std::string file = name;
    std::replace(file.begin(), file.end(), '/', '-');
    bench::WritePicture8(folder_ + "/" + file + ".png", picture);
  }
}

int RunPeer(const char* name, int argc, char** argv, const std::function<void(const Peer&)>& work) {
  try {
    work(Peer(name, argc, argv));
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", name, error.what());
    return 1;
  }
}

}  // namespace vitrell::peers
