// What the literal render makes of a fuzzed frame, compared with what the effect made of it.
#ifndef VITRELL_FUZZ_LITERAL_CHECK_H_
#define VITRELL_FUZZ_LITERAL_CHECK_H_

#include <optional>

#include "literal/render/render_driver.h"
#include "reliability/raw_host.h"

namespace vitrell::fuzz {

// The literal render of the records as they stand. Nothing where it cannot follow: where a record
// is not sound, or where it would have to walk for long.
std::optional<literal::RenderOutcome> LiteralRender(reliability::RawHost& host);

// Ends the process when the output record holds another picture.
void RequirePicture(const literal::World& expected, const reliability::RawHost& host);

}  // namespace vitrell::fuzz

#endif  // VITRELL_FUZZ_LITERAL_CHECK_H_
