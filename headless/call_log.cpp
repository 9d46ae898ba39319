// Selects and counts logged host calls.
#include "headless/call_log.h"

#include <algorithm>

namespace vitrell::headless {

std::vector<std::string> CallTexts(const std::vector<HostCall>& calls) {
  return CallTexts(calls, {CallKind::kAny});
}

std::vector<std::string> CallTexts(const std::vector<HostCall>& calls,
                                   std::initializer_list<CallKind> kinds) {
  std::vector<std::string> texts;
  for (const HostCall& call : calls) {
    const bool wanted = std::any_of(kinds.begin(), kinds.end(), [&](CallKind kind) {
      return kind == CallKind::kAny || kind == call.kind;
    });
    if (wanted) texts.push_back(call.text);
  }
  return texts;
}

int CountCalls(const std::vector<HostCall>& calls, CallKind kind) {
  return static_cast<int>(CallTexts(calls, {kind}).size());
}

std::string RectText(const PF_LRect* rect) {
  if (rect == nullptr) return "whole";
  return std::to_string(rect->left) + "," + std::to_string(rect->top) + "," +
         std::to_string(rect->right) + "," + std::to_string(rect->bottom);
}

}  // namespace vitrell::headless
