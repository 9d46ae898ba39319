// Keeps several processes with many threads to a number of processors.
//
// Codecs have threads of their own, which nobody can hold up once they have a frame. What can wait
// is the next frame: it does while all together are ahead of what so many processors could have
// done. So they are kept to on average over some tenths of a second, and none of them idles while
// there is work.
#ifndef VITRELL_CLI_PROCESSOR_BUDGET_H_
#define VITRELL_CLI_PROCESSOR_BUDGET_H_

namespace vitrell::cli {

class ProcessorBudget {
 public:
  // 0 processors: there is no limit.
  explicit ProcessorBudget(int processors);

  bool IsLimited() const { return processors_ > 0; }
  // Up to now, both in seconds since any moment that stays the same: of the clock, and of work on
  // all processors together.
  void Account(double clock, double work);
  // Whether more work may begin.
  bool HasRoom() const { return !IsLimited() || room_ >= 0; }

 private:
  // What may be used at once after a rest, for so long by all.
  static constexpr double kRestSeconds = 0.1;

  int processors_;
  double room_;  // seconds of work
  double clock_ = 0;
  double work_ = 0;
  bool begun_ = false;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_PROCESSOR_BUDGET_H_
