// Shared by the peer programs: command line, image files, clock and output.
#ifndef VITRELL_BENCH_PEERS_PEER_H_
#define VITRELL_BENCH_PEERS_PEER_H_

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "bench/picture.h"

namespace vitrell::peers {

using Picture8 = bench::Picture<std::uint8_t>;

// The weights of a regular pentagon of this radius with a vertex at the top: a row-major square of
// side 2 x radius + 1 that sums to 1.
std::vector<float> PentagonKernel(int radiusPx);

// A lens as a map: 255 at the centre, falling as a cosine to 0 at a radius of half the height.
std::vector<std::uint8_t> SoftCircle(int width, int height);

class Peer {
 public:
  // Parses PROGRAM PICTURE [--quick] [--write FOLDER] [--only TEXT]. Throws std::runtime_error.
  Peer(const char* name, int argc, char** argv);

  [[nodiscard]] const Picture8& Input() const { return input_; }
  [[nodiscard]] Picture8 SameSize() const;

  // Prints "name <tab> median milliseconds" of processor time, summed over all threads, of several
  // runs after a warm-up. `result` returns the last run's image, for --write.
  void Measure(const std::string& caseName, const std::function<void()>& run,
               const std::function<Picture8()>& result) const;

 private:
  std::string name_;
  Picture8 input_;
  std::string folder_;
  std::string only_;
  bool quick_ = false;
};

// Runs `work` and turns an exception into a message and exit code 1.
int RunPeer(const char* name, int argc, char** argv, const std::function<void(const Peer&)>& work);

}  // namespace vitrell::peers

#endif  // VITRELL_BENCH_PEERS_PEER_H_
