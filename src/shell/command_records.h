// Whether the host handed over what a command works on.
#ifndef VITRELL_SHELL_COMMAND_RECORDS_H_
#define VITRELL_SHELL_COMMAND_RECORDS_H_

#include "host/host_api.h"

namespace vitrell {

// False when a record that the command reads or writes, or a callback that it cannot do without, is
// null. Commands that do nothing need nothing. Suites are not looked at.
bool HasRecords(PF_Cmd cmd, const PF_InData* inData, const PF_OutData* outData,
                const PF_ParamDef* const params[], const PF_LayerDef* output);

}  // namespace vitrell

#endif  // VITRELL_SHELL_COMMAND_RECORDS_H_
