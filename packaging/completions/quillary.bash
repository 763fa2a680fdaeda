# shellcheck shell=bash
# Completion for bash. What may stand where tells "qly __complete"; the words come quoted as bash wants them.

_quillary_files() {    # WORD SUFFIX: folders, and the files with that ending in small or capital letters
  compopt -o filenames
  mapfile -t COMPREPLY < <(
    compgen -d -- "$1"
    if [ -n "$2" ]; then
      compgen -f -X "!*$2" -- "$1"
      compgen -f -X "!*${2^^}" -- "$1"
    else
      compgen -f -- "$1"
    fi | while IFS= read -r file; do [ -d "$file" ] || printf '%s\n' "$file"; done
  )
}

_qly() {
  local -a answer
  mapfile -t answer < <(qly __complete --bash "${COMP_LINE:0:COMP_POINT}" "$COMP_WORDBREAKS" 2>/dev/null)
  case "${answer[0]-}" in
    files*) _quillary_files "$2" "${answer[0]#files }" ;;
    words)
      COMPREPLY=("${answer[@]:1}")
      if [[ ${COMPREPLY[0]-} == *= ]]; then compopt -o nospace; fi
      ;;
  esac
}

# The options that the help lists; else files.
_quillary() {
  local option=$3
  if [[ $3 == = ]]; then option=${COMP_WORDS[COMP_CWORD - 2]}; fi    # bash takes --picture=FILE apart
  if [[ $2 == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$("$1" --help 2>/dev/null | grep -oE -- '--[a-z][a-z-]*')" -- "$2")
  elif [[ $option == --picture ]]; then
    _quillary_files "$2" .png
  elif [[ $1 == *quillary-catalogue ]]; then
    if [[ $option == --folder ]]; then compopt -o filenames && mapfile -t COMPREPLY < <(compgen -d -- "$2"); fi
  else
    _quillary_files "$2" .pdb
  fi
}

complete -F _qly qly
complete -F _quillary quillary quillary-catalogue
