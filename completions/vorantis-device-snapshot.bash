# SPDX-License-Identifier: MIT
# bash completion of vorantis-device-snapshot

_vorantis_device_snapshot() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} ahead=" ${COMP_WORDS[*]:0:COMP_CWORD} "
  COMPREPLY=()
  [ "$word" = "=" ] && word=
  [ "$previous" = "=" ] && previous=${COMP_WORDS[COMP_CWORD - 2]}
  case $previous in
    --ppd | --from-table) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    --ignore) mapfile -t COMPREPLY < <(compgen -W "profile-missing profile-elsewhere profile-permissions profile-collision" -- "$word") ;;
    *)
      if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "--ppd= --from-table= --check --ignore= --allow-empty --help --version -h -V" -- "$word")
      elif [[ $ahead == *" --check "* ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
      elif [[ ${COMP_WORDS[COMP_CWORD - 1]} != : ]]; then
        mapfile -t COMPREPLY < <(compgen -W "socket:// ipp:// ipps:// lpd://" -- "$word")
      fi
      ;;
  esac
}
complete -o nospace -o filenames -F _vorantis_device_snapshot vorantis-device-snapshot
