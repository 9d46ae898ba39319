// `vitrell render` of a picture.
#ifndef VITRELL_CLI_RENDER_STILL_H_
#define VITRELL_CLI_RENDER_STILL_H_

#include "cli/arguments.h"

namespace vitrell::cli {

// Renders INPUT, or the pages of it that are asked for, into OUTPUT. Throws Failure.
void RenderStill(const RenderArguments& arguments);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_RENDER_STILL_H_
