// The effect's constant string table.
#include "shell/strings.h"

#include <string_view>

namespace vitrell {
namespace {

// PF_OutData::return_msg holds 256 characters including the terminating NUL.
constexpr std::size_t kMessageSize = 256;

}  // namespace

static_assert(STR_COUNT == 49);
static_assert([] {
  for (std::int32_t i = 0; i < STR_COUNT; ++i) {
    if (g_strs[i].id != i) {
      return false;
    }
  }
  return true;
}());
static_assert(std::string_view(g_strs[STR_PRODUCT_NAME].text).size() + 1 +
                  std::string_view(g_strs[STR_ABOUT].text).size() <
              kMessageSize);

const char* GetStringPtr(int id) { return g_strs[id].text; }

}  // namespace vitrell
