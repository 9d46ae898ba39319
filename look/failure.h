// How values, presets and settings tell that something is wrong with them.
#ifndef VITRELL_LOOK_FAILURE_H_
#define VITRELL_LOOK_FAILURE_H_

#include <stdexcept>

#include "media/failure.h"

namespace vitrell::look {

using media::Failure;
using media::kFailed;
using media::kWrongUsage;

// A text that is no value for a control. The catcher knows where the text came from (an option or
// a preset) and puts that in front of the message.
class ValueError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_FAILURE_H_
