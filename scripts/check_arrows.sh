#!/usr/bin/env bash
# Checks who includes whom. docs/architecture.md has a table, "Folder | Holds | May include", of the
# arrows that are permitted between the folders of src/, and from folders beside it into src/. Fails,
# naming file and line, when
#   - an #include (in .h, .cpp or .inc) makes an arrow that no row permits,
#   - a row permits what no #include uses, or names a folder that holds no source,
#   - a folder with sources has no row,
#   - the permitted arrows run in a circle,
#   - src/ includes something from beside it, the standard library and intrinsics apart, and
#     <windows.h> in the files whose name ends in _windows.
#
#   scripts/check_arrows.sh [ROOT]    ROOT: the tree to check; default: the one of this script
#
# In the table a folder stands in backticks, `blur/fast`; paths are relative to src/, and `../tool`
# is a folder beside it. `blur/*` stands for the folders right below blur. A row may name several
# folders, which are then permitted the same. tests/ and bench/ may include everything.
set -euo pipefail

if [[ "${1:-}" == -h || "${1:-}" == --help ]]; then
  sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
  exit 0
fi
here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
cd "${1:-"$here/.."}"

page=docs/architecture.md
if [[ ! -f "$page" || ! -d src ]]; then
  echo "check_arrows: $PWD has no $page or no src/" >&2
  exit 2
fi

sources() {
  find . \( -name '.?*' -o -path ./build -o -path ./dist -o -path ./out \) -prune \
    -o -type f \( -name '*.h' -o -name '*.cpp' -o -name '*.inc' \) "$@"
}

# Records, their fields separated by tabs: "file" PATH, "row" LINE TEXT and "line" PATH NUMBER TEXT.
# The lines are inclusions and macros that stand for a path, since an inclusion may name a macro.
{
  sources -print | sed 's|^\./|file\t|'
  awk '
    /^\| *Folder *\| *Holds *\| *May include *\|/ { inside = 1; next }
    !/^\|/ { inside = 0 }
    inside { print "row\t" NR "\t" $0 }' "$page"
  sources -exec grep -nE \
    '^[[:space:]]*#[[:space:]]*(include|define[[:space:]]+[A-Za-z_0-9]+[[:space:]]+")' /dev/null {} + |
    LC_ALL=C sort -t: -k1,1 -k2,2n | sed -E 's|^\./([^:]*):([0-9]+):|line\t\1\t\2\t|'
} | awk -F '\t' -v page="$page" -f "$here/check_arrows.awk"
