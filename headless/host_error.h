// Errors of the headless host, and the meanings of the error codes that an effect returns.
#ifndef VITRELL_HEADLESS_HOST_ERROR_H_
#define VITRELL_HEADLESS_HOST_ERROR_H_

#include <stdexcept>
#include <string>

#include "host/host_api.h"

namespace vitrell::headless {

// Says in full sentences what went wrong, where, and what the user can do about it.
class HostError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// "PF_Err_BAD_CALLBACK_PARAM" for 516; "unknown error" for a code the host does not define.
std::string ErrorName(PF_Err error);

// "PF_Err_BAD_CALLBACK_PARAM (516): a host suite or callback that the effect needs is missing or
// was called wrongly".
std::string DescribeError(PF_Err error);

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_HOST_ERROR_H_
