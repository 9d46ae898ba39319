// The tables of host functions that an effect calls.
#ifndef VITRELL_HEADLESS_HOST_TABLES_H_
#define VITRELL_HEADLESS_HOST_TABLES_H_

#include "host/host_api.h"

namespace vitrell::headless {

PF_InteractCallbacks MakeInteractCallbacks();
PF_UtilCallbacks MakeUtilCallbacks();
// The same for all hosts. Not const, since the input record's pointer to it is not.
SPBasicSuite* BasicSuite();

// Worlds, for the utility callbacks and the world suite alike.
PF_Err NewWorldCallback(PF_ProgPtr effectRef, A_long width, A_long height, PF_NewWorldFlags flags,
                        PF_LayerDef* world);
PF_Err DisposeWorldCallback(PF_ProgPtr effectRef, PF_LayerDef* world);

// The served part of the utility table that deals in worlds.
void FillWorldCallbacks(PF_UtilCallbacks& callbacks);

PF_Iterate8Suite1 MakeIterate8Suite();
PF_iterate16Suite1 MakeIterate16Suite();

// Stands in every slot that this host does not serve; complains.
void UnservedCallback();

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_HOST_TABLES_H_
