// The measured cases: settings by name, and the settings each is compared with.
#ifndef VITRELL_BENCH_CASES_H_
#define VITRELL_BENCH_CASES_H_

#include <string>
#include <vector>

#include "bench/bench_frame.h"

namespace vitrell::bench {

struct BenchCase {
  std::string name;
  std::string detail;  // Follows the size, such as "r20"; may be empty.
  Settings settings;
  bool customLayer = false;
  // Rendered alternately with the case; x_other is the ratio of the two times. These settings
  // always are those of another case as well, where their result is checked.
  Settings other;
  // The index of the stage's own pass, counted from 0, and the number of passes of the render;
  // x_pass is the time of that pass, including the effect's preparation, relative to the same pass
  // of the floor. -1: none.
  int pass = -1;
  int passes = 0;
  // x_pass is the time of the lens mask relative to a pass of the floor.
  bool mask = false;
  // Whether it is also measured at 7680 x 4320.
  bool huge = false;
};

// Every case except EverythingOn().
std::vector<BenchCase> AllCases();

// Every stage at once, the lens alone, and each stage alone within that lens.
Settings EverythingOn();
Settings CircleAlone();
std::vector<Settings> EachAlone();

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_CASES_H_
