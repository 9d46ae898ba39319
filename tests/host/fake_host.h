// A scripted host for direct tests of the effect's functions: it records every call and returns
// what the test has set.
#ifndef VITRELL_TESTS_HOST_FAKE_HOST_H_
#define VITRELL_TESTS_HOST_FAKE_HOST_H_

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/host_api.h"

namespace vitrell {

// What one new_world call does.
struct NewWorldAnswer {
  PF_Err error = PF_Err_NONE;
  bool deep = false;
  bool junk = false;  // A failing call leaves junk in the record, its data pointer included.
};

// One at a time: some callbacks have no other way to their host than process-wide data.
//
// Log lines: "acquire NAME VERSION", "release NAME VERSION", "new_world WxH flags F", "dispose",
// "copy", "fill A,R,G,B in L,T,R,B", "fill16 ...", "iterate8 BASE..FINAL", "iterate16 ...".
class FakeHost {
 public:
  FakeHost();
  ~FakeHost();
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  PF_InData* inData() { return &inData_; }

  std::vector<std::string> log;
  std::set<std::string> refusedSuites;  // Acquiring answers an error.
  std::set<std::string> nullSuites;     // Acquiring answers success and no suite.
  // Worlds made beyond this list have the depth that the flags ask for.
  std::deque<NewWorldAnswer> newWorldAnswers;
  // What the nth call of a kind answers ("copy", "iterate", "fill"), n from 1. Failing calls do
  // nothing.
  std::map<std::string, std::map<int, PF_Err>> failures;
  // The result of iterate after it has visited every pixel.
  PF_Err iterateResult = PF_Err_NONE;
  // Seeds the order in which iterate visits the pixels; row by row if there is none.
  std::optional<unsigned> shuffleSeed;
  int liveWorlds = 0;
  void* lastRefcon = nullptr;
  PF_LayerDef* lastSource = nullptr;
  PF_LayerDef* lastDestination = nullptr;
  bool lastAreaNull = false;

  // Counts a call of a kind and answers its failure, or 0.
  PF_Err Answer(const std::string& kind);

 private:
  PF_UtilCallbacks utils_ = {};
  SPBasicSuite basic_ = {};
  PF_InData inData_ = {};
  std::map<std::string, int> counts_;
};

// The maths functions of the C library, as the host's callbacks.
void FillMaths(PF_ANSICallbacks* maths);

}  // namespace vitrell

#endif  // VITRELL_TESTS_HOST_FAKE_HOST_H_
