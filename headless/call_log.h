// The effect's calls to the host, logged in a form that tests compare as text.
#ifndef VITRELL_HEADLESS_CALL_LOG_H_
#define VITRELL_HEADLESS_CALL_LOG_H_

#include <initializer_list>
#include <string>
#include <vector>

#include "host/host_api.h"

namespace vitrell::headless {

// Every host call except the maths functions, sprintf and strcpy. The comment shows its log line; a
// failed call has " fails with <code>" appended.
//
// Worlds are called "input", "output", "custom" (the checked-out layer) and "world1", "world2", ...
// in the order in which new_world made them during the command; "none" is a record without pixels,
// and "foreign" one whose pixels are not the host's. Rectangles are written left,top,right,bottom.
enum class CallKind {
  kAny,            // Matches every kind in filters and faults; never logged.
  kCheckoutParam,  // checkout_param 3 time 0 step 1 scale 30
  kCheckinParam,   // checkin_param 3
  kAddParam,       // add_param -1 id 2 "Type"      (the index is the one the effect passed)
  kAbort,          // abort
  kProgress,       // progress 10 of 270
  kNewWorld,      // new_world world1 480x270 flags 0  (a failed one has no name: new_world 480x270)
  kDisposeWorld,  // dispose_world world1
  kCopy,          // copy input -> world1          (then " from 0,0,4,4" and " to 1,1,5,5")
  kFill,          // fill world1 0,0,0,0 in 0,0,480,270  (alpha,red,green,blue; "null", "whole")
  kFill16,        // fill16 world1 null in whole
  kAcquireSuite,  // acquire_suite PF World Suite 2
  kReleaseSuite,  // release_suite PF World Suite 2
  kIterate8,      // iterate8 world1 -> world2 rows 0..270  (then " area 0,0,4,4", " no refcon")
  kIterate16,     // iterate16 world1 -> world2 rows 0..270
  kGetPixelFormat,  // get_pixel_format input
  kUpdateParamUI,   // update_param_ui 5
};

struct HostCall {
  CallKind kind = CallKind::kAny;
  PF_Err result = PF_Err_NONE;  // What the host returned.
  std::string text;             // As in the comments above.
  double startSeconds = 0;      // Since the command began.
  double seconds = 0;           // Until the host returned.
};

// The text of each call, in order; the second form keeps only the given kinds.
std::vector<std::string> CallTexts(const std::vector<HostCall>& calls);
std::vector<std::string> CallTexts(const std::vector<HostCall>& calls,
                                   std::initializer_list<CallKind> kinds);

// Number of calls of a kind; kAny counts all.
int CountCalls(const std::vector<HostCall>& calls, CallKind kind);

// "0,0,480,270", or "whole" for a null rectangle.
std::string RectText(const PF_LRect* rect);

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_CALL_LOG_H_
