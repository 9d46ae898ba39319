// The tables of host functions that an effect calls.
#ifndef VITRELL_HEADLESS_HOST_TABLES_H_
#define VITRELL_HEADLESS_HOST_TABLES_H_

#include "host/host_api.h"

namespace vitrell::headless {

PF_InteractCallbacks MakeInteractCallbacks();
PF_UtilCallbacks MakeUtilCallbacks();
// One table for all hosts. Not const because the input record points to a non-const one.
SPBasicSuite* BasicSuite();

// Shared by the utility callbacks and the world suite.
PF_Err NewWorldCallback(PF_ProgPtr effectRef, A_long width, A_long height, PF_NewWorldFlags flags,
                        PF_LayerDef* world);
PF_Err DisposeWorldCallback(PF_ProgPtr effectRef, PF_LayerDef* world);

// Fills in those utility callbacks that work on worlds.
void FillWorldCallbacks(PF_UtilCallbacks& callbacks);

PF_Iterate8Suite1 MakeIterate8Suite();
PF_iterate16Suite1 MakeIterate16Suite();

// Fills every slot that this host does not implement; complains when called.
void UnservedCallback();

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_HOST_TABLES_H_
