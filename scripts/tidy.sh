#!/usr/bin/env bash
# Runs clang-tidy over the shipped code; headers are checked through the files that include them. A
# file that was clean is not checked again until it, anything it includes, its compile command,
# .clang-tidy or clang-tidy itself has changed.
#
#   scripts/tidy.sh            every source file that needs it, but those of another system
#   scripts/tidy.sh --all      every source file
#   scripts/tidy.sh FILE...    only these, when they need it
#   scripts/tidy.sh --remember the same as without; when all is clean, scripts/tidy_clean.txt says so
#   scripts/tidy.sh --help
#
# What was clean is remembered in VITRELL_TIDY_CACHE (default: vitrell-tidy in the user's folder of
# caches) by the contents of the files, so that another clone profits too. scripts/tidy_clean.txt is
# the memory of the project itself, for machines that never checked it: one checksum a file over all
# that goes into it. A file that it does not know, or knows otherwise, is checked.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

export clean_list="$root/scripts/tidy_clean.txt"
export cache="${VITRELL_TIDY_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/vitrell-tidy}"
# Never built. Without precompiled headers, which also shows a file that forgets an include.
build=build/tidy
export root build

usage() {
  sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
}

# One line for each compiled file: its path, a tab, and the command that compiles it, without the
# cache in front of it.
list_commands() {
  sed -n -E '
    /^ *"command": /{
      s/^ *"command": "//; s/",$//; s/\\(["\\])/\1/g
      s/^[^ ]*\/ccache //; h
    }
    /^ *"file": /{
      s/^ *"file": "//; s/",?$//; G; s/\n/\t/; p
    }' "$build/compile_commands.json" | sed "s|^$root/||"
}

# Prints checksum and path of every file that goes into a compilation, this tree's by relative path.
# Takes a line of list_commands.
sum_inputs() {
  local command="${1#*$'\t'}"
  command="$(sed -E 's/ -o [^ ]+ -c / -M -MT x /' <<<"$command")"
  (cd "$build" && eval "$command") |
    sed -E 's/^x://; s/\\$//; s/\\ /\x01/g; s/ +/\n/g' | sed -e '/^$/d' -e 's/\x01/ /g' \
    -e "s|^$root/||" | LC_ALL=C sort -u | xargs -d '\n' sha256sum
}

# One line of the list of clean files. Takes a line of list_commands and its inputs' checksums; where
# other libraries' headers lie shows in the inputs.
clean_line() {
  local file="${1%%$'\t'*}" command
  command="$(sed -E "s/ -isystem [^ ]+//g; s|$root||g" <<<"${1#*$'\t'}")"
  printf '%s  %s\n' "$(sha256sum <<<"$setting$command$2" | cut -d ' ' -f 1)" "$file"
}

# Checks one file and remembers it when it is clean. Takes the name to remember it by and a line of
# list_commands.
check_one() {
  local stamp="$cache/$1" file="${2%%$'\t'*}" sums
  sums="$(sum_inputs "$2")" || return 1
  if [[ -n "$all" ]] || ! grep -qxF "$(clean_line "$2" "$sums")" "$clean_list"; then
    clang-tidy-14 -p "$build" --quiet --warnings-as-errors='*' "$file" || return 1
  fi
  printf '%s\n' "$sums" >"$stamp.$$" && mv "$stamp.$$" "$stamp"
}
export -f sum_inputs clean_line check_one

# Prints which of the stamps named on stdin (paths) are still true of the files they list.
true_stamps() {
  local stamps
  mapfile -t stamps
  ((${#stamps[@]})) || return 0
  cut -c67- "${stamps[@]}" | LC_ALL=C sort -u | xargs -d '\n' sha256sum 2>/dev/null |
    awk 'FILENAME == "-" { now[$0] = 1; next }
      FNR == 1 { names[FILENAME] = 1 }
      !($0 in now) { changed[FILENAME] = 1 }
      END { for (name in names) if (!(name in changed)) print name }' - "${stamps[@]}"
}

files=()
export all=
remember=
for argument in "$@"; do
  case "$argument" in
    -h | --help)
      usage
      exit 0
      ;;
    --all) all=1 ;;
    --remember) remember=1 ;;
    *) files+=("$argument") ;;
  esac
done
((${#files[@]})) ||
  mapfile -t files < <(own_sources |
    grep -E '^(src|headless|media|look|cli|frei0r|panel|tools)/.*\.cpp$' | grep -v '_windows\.cpp$')
((${#files[@]})) || exit 1

use_ccache
say "Configuring $build for its compile commands"
cmake --preset clang -B "$build" -DVITRELL_PCH=OFF -DVITRELL_UNITY=OFF \
  -DVITRELL_BUILD_PANEL=ON --log-level=WARNING
mkdir -p "$cache"
find "$cache" -type f -mtime +60 -delete

# What a stamp's name holds beside the file: all that is not among the files it lists.
setting="$(clang-tidy-14 --version | grep version; cat .clang-tidy)"
export setting
touch "$clean_list"
declare -A line_of name_of is_true
while IFS= read -r line; do
  line_of["${line%%$'\t'*}"]="$line"
done < <(list_commands)
for file in "${files[@]}"; do
  if [[ -z "${line_of[$file]:-}" ]]; then
    echo "$file is not compiled in $build" >&2
    exit 2
  fi
  name_of["$file"]="$(sha256sum <<<"$setting${line_of[$file]//"$root"/}")"
  name_of["$file"]="${name_of[$file]%% *}"
done
while IFS= read -r stamp; do
  touch "$stamp"
  is_true["${stamp##*/}"]=1
done < <(for file in "${files[@]}"; do
  [[ ! -f "$cache/${name_of[$file]}" ]] || printf '%s\n' "$cache/${name_of[$file]}"
done | true_stamps)

due=()
for file in "${files[@]}"; do
  [[ -z "$all" && -n "${is_true[${name_of[$file]}]:-}" ]] || due+=("$file")
done
say "Checking ${#due[@]} of ${#files[@]} files; the others have not changed since they were clean"
for file in "${due[@]}"; do
  printf '%s\0%s\0' "${name_of[$file]}" "${line_of[$file]}"
done | xargs -0 -r -n 2 -P "$jobs" bash -c 'check_one "$1" "$2"' check_one \
  2> >(grep -v -E '^[0-9]+ warnings? generated\.$|^$|^Suppressed ' >&2) || exit 1
if [[ -n "$remember" ]]; then
  for file in "${files[@]}"; do
    clean_line "${line_of[$file]}" "$(cat "$cache/${name_of[$file]}")"
  done >"$clean_list"
fi
echo "${#files[@]} files are tidy."
