// A render's host calls as a table of stages and times.
#ifndef VITRELL_CLI_CALL_REPORT_H_
#define VITRELL_CLI_CALL_REPORT_H_

#include <string>

#include "headless/render.h"

namespace vitrell::cli {

// One line for each call that touches pixels: when it began, the effect's own time before it, the
// host's time for it, and its description. Bookkeeping calls (suites, parameters, formats) are left
// out; their time counts as the effect's own.
std::string ReportCalls(const headless::RenderResult& result);

// How many passes over pixels the render made.
int CountPasses(const headless::RenderResult& result);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_CALL_REPORT_H_
