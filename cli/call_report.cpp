// Telling where the time of a render went.
#include "cli/call_report.h"

#include <array>
#include <cstdio>

#include "headless/call_log.h"

namespace vitrell::cli {
namespace {

using headless::CallKind;

bool IsPass(CallKind kind) { return kind == CallKind::kIterate8 || kind == CallKind::kIterate16; }

bool IsPixelWork(CallKind kind) {
  return IsPass(kind) || kind == CallKind::kCopy || kind == CallKind::kFill ||
         kind == CallKind::kFill16 || kind == CallKind::kNewWorld;
}

std::string Line(double start, double own, double host, const std::string& text) {
  std::array<char, 80> numbers{};
  std::snprintf(numbers.data(), numbers.size(), "%9.4f  %9.4f  %9.4f  ", start, own, host);
  return numbers.data() + text + "\n";
}

}  // namespace

std::string ReportCalls(const headless::RenderResult& result) {
  std::string report = "  start s      own s     host s  call\n";
  double end = 0;
  for (const headless::HostCall& call : result.calls) {
    if (!IsPixelWork(call.kind)) continue;
    report += Line(call.startSeconds, call.startSeconds - end, call.seconds, call.text);
    end = call.startSeconds + call.seconds;
  }
  return report;
}

int CountPasses(const headless::RenderResult& result) {
  int passes = 0;
  for (const headless::HostCall& call : result.calls) passes += IsPass(call.kind) ? 1 : 0;
  return passes;
}

}  // namespace vitrell::cli
