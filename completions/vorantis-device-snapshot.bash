# SPDX-License-Identifier: MIT
# bash completion of vorantis-device-snapshot

_vorantis_device_snapshot() {
  local word=${COMP_WORDS[COMP_CWORD]}
  COMPREPLY=()
  [[ $word != -* ]] || mapfile -t COMPREPLY < <(compgen -W "--ppd= --from-table= --check --allow-empty --help --version -h -V" -- "$word")
}
complete -F _vorantis_device_snapshot vorantis-device-snapshot
