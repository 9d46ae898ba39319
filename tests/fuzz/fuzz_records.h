// Records, parameters and pixels made of bytes, and what the effect may answer to them.
#ifndef VITRELL_FUZZ_FUZZ_RECORDS_H_
#define VITRELL_FUZZ_FUZZ_RECORDS_H_

#include "fuzz/byte_reader.h"
#include "reliability/raw_host.h"

namespace vitrell::fuzz {

// Worlds of at most 24 x 24 pixels on the heap, without a byte to spare. Mostly sound.
reliability::RawHost::Setup SetupFrom(ByteReader& bytes);

// One control gets a value: most of the time one that keeps a render of this size short, and
// otherwise one that no panel offers. Lengths that are far beyond the panel, but finite and not
// refused, are left out: they take long by design.
void SetParameter(ByteReader& bytes, int index, reliability::RawHost& host);

// Which of the first host calls fail: none to three.
void PlanFaults(ByteReader& bytes, reliability::RawHost& host);

// Sends the command and ends the process when the answer, the output or what the host lent is not
// as promised. Returns the answer.
PF_Err SendChecked(PF_Cmd cmd, reliability::RawHost& host);

}  // namespace vitrell::fuzz

#endif  // VITRELL_FUZZ_FUZZ_RECORDS_H_
