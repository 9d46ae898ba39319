// Propagates host error codes up the call chain.
#ifndef VITRELL_HOST_RESULT_H_
#define VITRELL_HOST_RESULT_H_

#include "host/host_types.h"

// Evaluates a PF_Err expression once; if it is not 0, returns it from the enclosing function.
#define RETURN_IF_ERROR(expression)                                    \
  do {                                                                 \
    if (const PF_Err resultOfCall = (expression); resultOfCall != 0) { \
      return resultOfCall;                                             \
    }                                                                  \
  } while (false)

#endif  // VITRELL_HOST_RESULT_H_
