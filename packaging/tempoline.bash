# Completion of tempoline for bash: calendar files, folders and the two options.

_tempoline() {
  local current=${COMP_WORDS[COMP_CWORD]}
  if [[ $current == -* ]]; then
    COMPREPLY=($(compgen -W "--help --version" -- "$current"))
    return
  fi
  compopt -o filenames 2>/dev/null
  local IFS=$'\n'
  COMPREPLY=($(compgen -d -- "$current") $(compgen -f -X '!*.cld' -- "$current"))
}
complete -F _tempoline tempoline
