// What a pixel holds, in words.
#ifndef VITRELL_PANEL_MODEL_PROBE_H_
#define VITRELL_PANEL_MODEL_PROBE_H_

#include <QString>

#include "panel/model/source.h"

namespace vitrell::panel {

// "480, 270   R 12  G 34  B 56   ->   R 20  G 40  B 61": place, the file's own numbers, and those
// that a file of the same type would get. Alpha where the file has one. The result may be null.
QString ProbeText(const SourceFrame& frame, const headless::WorldBuffer* result, int x, int y);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_PROBE_H_
