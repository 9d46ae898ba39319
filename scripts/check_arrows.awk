# Judges the records that check_arrows.sh gathers; its head tells the rules.

function complain(place, text) {
  print place ": " text
  failures++
}

# The path without "." and "..", as far as they can be taken away.
function normal(path,    parts, count, kept, depth, i) {
  count = split(path, parts, "/")
  depth = 0
  for (i = 1; i <= count; i++) {
    if (parts[i] == "..") {
      if (depth > 0) depth--
      else return path
    } else if (parts[i] != "." && parts[i] != "") kept[++depth] = parts[i]
  }
  path = ""
  for (i = 1; i <= depth; i++) path = path (i > 1 ? "/" : "") kept[i]
  return path
}

function in_src(path) { return substr(path, 1, 4) == "src/" }

# The name that the table gives to the folder of a file.
function folder_of(path,    folder) {
  if (!in_src(path)) {
    sub(/\/.*/, "", path)
    return "../" path
  }
  folder = substr(path, 5)
  if (!sub(/\/[^\/]*$/, "", folder)) return "."
  return folder
}

# The file of this tree that an inclusion means; empty when there is none.
function target_of(includer, name,    folder) {
  folder = includer
  sub(/[^\/]*$/, "", folder)
  if (normal(folder name) in files) return normal(folder name)
  if (normal("src/" name) in files) return normal("src/" name)
  if (normal(name) in files) return normal(name)
  return ""
}

# Fills names[1..count] with what stands in backticks in a cell of the table.
function read_names(cell, names,    count, name) {
  count = 0
  while (match(cell, /`[^`]+`/)) {
    name = substr(cell, RSTART + 1, RLENGTH - 2)
    cell = substr(cell, RSTART + RLENGTH)
    sub(/^src\//, "", name)
    sub(/\/$/, "", name)
    names[++count] = name
  }
  return count
}

function read_row(line, text,    cells, froms, tos, fromCount, toCount, i, j) {
  split(text, cells, "|")
  fromCount = read_names(cells[2], froms)
  toCount = read_names(cells[4], tos)
  for (i = 1; i <= fromCount; i++) {
    if (froms[i] in rowOf) complain(page ":" line, "`" froms[i] "` has a row already")
    rowOf[froms[i]] = line
    for (j = 1; j <= toCount; j++) permit(line, froms[i], tos[j])
  }
}

function permit(line, from, to) {
  permits[++permitCount] = line SUBSEP from SUBSEP to
  rights[line SUBSEP to] = from
}

# Whether the folder `to` is what a row calls `name`.
function matches(name, to) {
  if (name !~ /\/\*$/) return name == to
  sub(/\*$/, "", name)
  return substr(to, 1, length(name)) == name && substr(to, length(name) + 1) !~ /\//
}

function permitted(from, to,    i, parts, found) {
  found = 0
  for (i = 1; i <= permitCount; i++) {
    split(permits[i], parts, SUBSEP)
    if (parts[2] == from && matches(parts[3], to)) {
      used[parts[1] SUBSEP parts[3]] = 1
      found = 1
    }
  }
  return found
}

function judge_arrow(place, includer, target,    from, to) {
  from = folder_of(includer)
  to = folder_of(target)
  if (from == to || from == "../tests" || from == "../bench") return
  if (in_src(includer) && !in_src(target))
    complain(place, "src/ includes " target ", which lies beside it")
  else if (in_src(target) && !permitted(from, to))
    complain(place, "`" from "` may not include `" to "` (" target ")")
}

function judge_inclusion(includer, place, name, quoted,    target) {
  target = target_of(includer, name)
  if (target != "") judge_arrow(place, includer, target)
  else if (!in_src(includer)) return
  else if (quoted) complain(place, "\"" name "\" is not in src/")
  else if (name ~ /[.\/]/ && name !~ /^([a-z]+intrin|arm_neon)\.h$/ &&
           !(name == "windows.h" && includer ~ /_windows\.(h|cpp)$/))
    complain(place, "<" name "> is not of the standard library")
}

# An inclusion of a macro makes the arrows of the files that define it.
function judge_macro(place, name,    i, parts, found) {
  found = 0
  for (i = 1; i <= macroCount; i++) {
    split(macros[i], parts, SUBSEP)
    if (parts[1] != name) continue
    judge_inclusion(parts[2], parts[3], parts[4], 1)
    found = 1
  }
  if (!found) complain(place, "no macro " name " tells what is included")
}

# Walks the permitted arrows from a folder; `path` is how it was reached.
function walk(folder, path,    i, parts, other, count, names) {
  if (state[folder] == 2) return
  path = path " -> " folder
  if (state[folder] == 1) {
    complain(page ":" rowOf[folder], "folders run in a circle:" substr(path, 4))
    return
  }
  state[folder] = 1
  for (i = 1; i <= permitCount; i++) {
    split(permits[i], parts, SUBSEP)
    if (parts[2] != folder) continue
    for (other in rowOf)
      if (other != folder && matches(parts[3], other)) walk(other, path)
  }
  state[folder] = 2
}

$1 == "file" { files[$2] = 1; if (in_src($2)) sourceFolders[folder_of($2)] = 1
               else besideFolders[folder_of($2)] = 1 }
$1 == "row" { rows[++rowCount] = $2 "\t" $3 }
$1 == "line" { lines[++lineCount] = $0 }

END {
  for (i = 1; i <= rowCount; i++) {
    split(rows[i], row, "\t")
    read_row(row[1], row[2])
  }
  if (!permitCount) complain(page, "no table \"Folder | Holds | May include\" with an arrow")

  for (i = 1; i <= lineCount; i++) {
    split(lines[i], field, "\t")
    if (field[4] !~ /^[ ]*#[ ]*define/) continue
    macro = field[4]
    sub(/^[ ]*#[ ]*define[ ]+/, "", macro)
    path = macro
    sub(/[ ].*/, "", macro)
    sub(/^[^"]*"/, "", path)
    sub(/".*/, "", path)
    macros[++macroCount] = macro SUBSEP field[2] SUBSEP field[2] ":" field[3] SUBSEP path
  }
  for (i = 1; i <= lineCount; i++) {
    split(lines[i], field, "\t")
    if (field[4] !~ /^[ ]*#[ ]*include/) continue
    place = field[2] ":" field[3]
    name = field[4]
    sub(/^[ ]*#[ ]*include[ ]*/, "", name)
    if (name ~ /^"[^"]+"/) {
      split(name, quote, "\"")
      judge_inclusion(field[2], place, quote[2], 1)
    } else if (name ~ /^<[^>]+>/) {
      sub(/^</, "", name)
      sub(/>.*/, "", name)
      judge_inclusion(field[2], place, name, 0)
    } else if (in_src(field[2])) {
      sub(/[ ].*/, "", name)
      judge_macro(place, name)
    }
  }

  for (folder in sourceFolders)
    if (!(folder in rowOf)) complain(page, "`" folder "` holds sources and has no row")
  for (folder in rowOf)
    if (!(folder in sourceFolders) && !(folder in besideFolders))
      complain(page ":" rowOf[folder], "`" folder "` holds no source")
  for (right in rights) {
    split(right, parts, SUBSEP)
    if (!(right in used))
      complain(page ":" parts[1], "`" rights[right] "` may include `" parts[2] "` and never does")
  }
  for (folder in rowOf) walk(folder, "")

  if (failures) exit 1
  print lineCount - macroCount " inclusions in " length_of(files) " files keep to " permitCount \
    " permitted arrows."
}

function length_of(array,    count, key) {
  count = 0
  for (key in array) count++
  return count
}
