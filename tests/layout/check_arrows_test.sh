#!/usr/bin/env bash
# Tries scripts/check_arrows.sh: a small tree of its own that is right, then one mistake at a time,
# each of which has to be told in the words expected; last, a copy of the real tree with one mistake.
#
#   check_arrows_test.sh PROJECT_ROOT
set -euo pipefail

project="$1"
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
tree="$scratch/tree"
cases=0
failed=0

put() {
  mkdir -p "$(dirname "$tree/$1")"
  printf '%s\n' "${@:2}" >"$tree/$1"
}

write_table() {
  put docs/architecture.md 'Text with a | in it.' '' '| Folder | Holds | May include |' \
    '|---|---|---|' "$@" '' '| Stage | Reads |' '|---|---|' '| `lens` | `nowhere` |'
}

rows=(
  '| `base` | numbers | nothing |'
  '| `lens` | the mask | `base` |'
  '| `blur` | the dispatcher | `base`, `blur/*` |'
  '| `blur/fast`, `blur/slow` | two blurs | `base`, `lens` |'
  '| `../tool` | a program beside it | `base` |'
)

# A tree that keeps to its table, with everything the check has to understand.
write_right_tree() {
  rm -rf "$tree"
  write_table "${rows[@]}"
  put src/base/number.h '#include <cstdint>' '#include <immintrin.h>'
  put src/base/each_target.h '#include KERNEL_SOURCE'
  put src/lens/mask.cpp '#include "lens/mask.h"' '#include "base/number.h"'
  put src/lens/mask.h '#include "../base/number.h"'
  put src/blur/dispatcher.cpp '#include "blur/fast/fast.h"' '  #  include "base/number.h"'
  put src/blur/fast/fast.h '#include "lens/mask.h"'
  put src/blur/fast/kernel.inc '#include "base/number.h"'
  put src/blur/fast/kernel.cpp '#define KERNEL_SOURCE "blur/fast/kernel.inc"' \
    '#include "base/each_target.h"'
  put src/blur/slow/slow.h '#include "lens/mask.h"'
  put tool/main.cpp '#include "tool/main.h"' '#include <tool_library/x.h>' '#include "base/number.h"'
  put tool/main.h ''
  put tests/mask_test.cpp '#include "lens/mask.h"' '#include "tool/main.h"'
}

# Runs the check on the tree: expect pass, or expect fail TEXT, which a line of the output begins or
# continues with.
expect() {
  local output status=0
  cases=$((cases + 1))
  output="$(bash "$project/scripts/check_arrows.sh" "$tree" 2>&1)" || status=$?
  if [[ "$1" == pass ]]; then
    ((status == 0)) && return
  elif ((status == 1)) && grep -qF -- "$2" <<<"$output"; then
    return
  fi
  failed=$((failed + 1))
  printf 'FAILED: expected %s; exit code %s and\n%s\n\n' "$*" "$status" "$output"
}

write_right_tree
expect pass

put src/lens/mask.h '#include "blur/fast/fast.h"'
expect fail 'src/lens/mask.h:1: `lens` may not include `blur/fast` (src/blur/fast/fast.h)'

write_right_tree
put src/blur/fast/kernel.inc '' '#include "blur/slow/slow.h"'
expect fail 'src/blur/fast/kernel.inc:2: `blur/fast` may not include `blur/slow`'

write_right_tree
put src/base/number.h '#include <lens/mask.h>'
expect fail '`base` may not include `lens`'

write_right_tree
put src/blur/fast/fast.h '#include "lens/mask.h"' '#include "../dispatcher.cpp"'
expect fail '`blur/fast` may not include `blur`'

write_right_tree
put src/blur/slow/slow.h '#include "lens/mask.h"' '#define KERNEL_SOURCE "blur/fast/kernel.inc"'
expect fail 'src/blur/slow/slow.h:2: `blur/slow` may not include `blur/fast`'

write_right_tree
put src/base/each_target.h '#include OTHER_SOURCE'
expect fail 'src/base/each_target.h:1: no macro OTHER_SOURCE tells what is included'

write_right_tree
put src/lens/mask.h '#include "base/number.h"' '#include "tool/main.h"'
expect fail 'src/lens/mask.h:2: src/ includes tool/main.h, which lies beside it'

write_right_tree
put src/lens/mask.h '#include "../../tool/main.h"'
expect fail 'src/ includes tool/main.h, which lies beside it'

write_right_tree
put src/lens/mask.h '#include "gone.h"'
expect fail 'src/lens/mask.h:1: "gone.h" is not in src/'

write_right_tree
put src/lens/mask.h '#include <png.h>'
expect fail 'src/lens/mask.h:1: <png.h> is not of the standard library'

write_right_tree
put src/lens/mask_windows.cpp '#include <windows.h>'
expect pass

write_right_tree
put src/lens/mask.h '#include <windows.h>'
expect fail 'src/lens/mask.h:1: <windows.h> is not of the standard library'

write_right_tree
put tool/main.h '#include "src/lens/mask.h"'
expect fail 'tool/main.h:1: `../tool` may not include `lens`'

write_right_tree
put other/main.cpp '#include "base/number.h"'
expect fail '`../other` may not include `base`'

write_right_tree
put src/extra/extra.h '#include <vector>'
expect fail '`extra` holds sources and has no row'

write_right_tree
write_table "${rows[@]}" '| `gone` | nothing any more | nothing |'
expect fail 'docs/architecture.md:10: `gone` holds no source'

write_right_tree
write_table "${rows[@]}" '| `blur/fast` | once more | `base` |'
expect fail 'docs/architecture.md:10: `blur/fast` has a row already'

write_right_tree
write_table '| `base` | numbers | `lens` |' "${rows[@]:1}"
expect fail 'docs/architecture.md:5: `base` may include `lens` and never does'

write_right_tree
write_table '| `base` | numbers | `blur/*` |' "${rows[@]:1}"
expect fail '`base` may include `blur/*` and never does'

write_right_tree
write_table '| `base` | numbers | `blur/fast` |' "${rows[@]:1}"
put src/base/number.h '#include "blur/fast/fast.h"'
expect fail 'folders run in a circle: '

write_right_tree
put docs/architecture.md 'No table.'
expect fail 'no table'

# The real tree as it is, and with one arrow upwards.
rm -rf "$tree"
mkdir -p "$tree/docs"
cp "$project/docs/architecture.md" "$tree/docs/"
for folder in src headless packaging frei0r; do
  cp -r "$project/$folder" "$tree/"
done
expect pass
printf '#include "shell/entry_point.h"\n' >>"$tree/src/host/host_api.h"
expect fail '`host` may not include `shell`'

echo "$cases cases, $failed failed."
((failed == 0))
