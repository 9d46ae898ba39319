// The lens stage: the processed picture inside the lens, the unprocessed one outside it.
#ifndef VITRELL_LITERAL_LENS_LENS_STAGE_H_
#define VITRELL_LITERAL_LENS_LENS_STAGE_H_

#include "literal/base/types.h"

namespace vitrell::literal {

// Composites src over `input` into dst. src and dst have the same size and depth; the input may
// have the other depth. blurMapAmount strengthens the mask when useBlurMap is set.
void LensPass(const World& input, bool useBlurMap, double blurMapAmount, const Mask& mask,
              const World& src, World& dst);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_LENS_LENS_STAGE_H_
