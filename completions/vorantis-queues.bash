# SPDX-License-Identifier: MIT
# bash completion of vorantis-queues

_vorantis_queues() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command= each options
  COMPREPLY=()
  for each in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $each in status | refresh | apply | explain) command=$each ;; esac
  done
  case $command in
    status) options="--all-drivers --json --openmetrics" ;;
    refresh) options="--all --dry-run --wait= --settle=" ;;
    apply) options="--prune --dry-run --wait= --settle=" ;;
    explain) options="--format= --output= --summary --warnings --full --medium= --strict" ;;
    *) options="status refresh apply explain --host= -h --help --version -V" ;;
  esac
  if [[ $command == apply && $word != -* ]]; then
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  elif [[ -n $command && $word != -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(lpstat -e 2>/dev/null)" -- "$word")
  elif [[ $before != -h ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  fi
}
complete -F _vorantis_queues vorantis-queues
