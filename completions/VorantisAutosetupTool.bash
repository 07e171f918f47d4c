# SPDX-License-Identifier: MIT
# bash completion of VorantisAutosetupTool, which has no options: DEVICE-URI PPD-PATH [PRINTER-ID]

_vorantis_autosetup_tool() {
  COMPREPLY=()
  [ "$COMP_CWORD" != 2 ] || mapfile -t COMPREPLY < <(compgen -f -- "${COMP_WORDS[COMP_CWORD]}")
}
complete -o filenames -F _vorantis_autosetup_tool VorantisAutosetupTool
