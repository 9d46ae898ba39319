// Checks that the host passed the records that a command needs.
#ifndef VITRELL_SHELL_COMMAND_RECORDS_H_
#define VITRELL_SHELL_COMMAND_RECORDS_H_

#include "host/host_api.h"

namespace vitrell {

// Returns false if a record that the command reads or writes, or a callback that it must call, is
// null. Commands that do nothing need nothing. Suites are not checked here.
bool HasRecords(PF_Cmd cmd, const PF_InData* inData, const PF_OutData* outData,
                const PF_ParamDef* const params[], const PF_LayerDef* output);

}  // namespace vitrell

#endif  // VITRELL_SHELL_COMMAND_RECORDS_H_
