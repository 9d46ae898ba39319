# Completion of vitrell for bash. Options and names of controls are asked of vitrell itself.

_vitrell_options() {
  vitrell "$1" --help 2>/dev/null | grep -oE -- '(^| |,)--[a-z0-9-]+' | tr -d ' ,' | sort -u
}

_vitrell_controls() {
  vitrell params --json 2>/dev/null | sed -n 's/.*"name": "\([^"]*\)".*/\1=/p'
}

_vitrell() {
  local current="${COMP_WORDS[COMP_CWORD]}" previous="${COMP_WORDS[COMP_CWORD - 1]}"
  COMPREPLY=()
  if ((COMP_CWORD == 1)); then
    COMPREPLY=($(compgen -W "render check params keys formats about help --help --version" -- "$current"))
  elif [[ "$previous" == --set ]]; then
    compopt -o nospace
    COMPREPLY=($(compgen -W "$(_vitrell_controls)" -- "$current"))
  elif [[ "$previous" == --depth ]]; then
    COMPREPLY=($(compgen -W "auto 8 16" -- "$current"))
  elif [[ "$previous" == --missing ]]; then
    COMPREPLY=($(compgen -W "fail skip hold black" -- "$current"))
  elif [[ "$previous" == --existing ]]; then
    COMPREPLY=($(compgen -W "fail skip overwrite" -- "$current"))
  elif [[ "$previous" == --progress ]]; then
    COMPREPLY=($(compgen -W "bar plain json none" -- "$current"))
  elif [[ "$previous" == --alpha ]]; then
    COMPREPLY=($(compgen -W "straight premultiplied ignore" -- "$current"))
  elif [[ "$current" == -* ]]; then
    COMPREPLY=($(compgen -W "$(_vitrell_options "${COMP_WORDS[1]}")" -- "$current"))
  else
    compopt -o default
  fi
}

complete -F _vitrell vitrell
