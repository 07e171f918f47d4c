# SPDX-License-Identifier: MIT
# bash completion of vorantis-autosetup-explain

_vorantis_autosetup_explain() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  [ "$word" = "=" ] && word=
  [ "$previous" = "=" ] && previous=${COMP_WORDS[COMP_CWORD - 2]}
  case $previous in
    -f | --format) mapfile -t COMPREPLY < <(compgen -W "text json html" -- "$word") ;;
    -o | --output) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    -m | --medium) COMPREPLY=() ;;
    *)
      if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "--format= --output= --medium= --summary --warnings --full --strict --help --version -h -V" -- "$word")
      else
        # bash takes the colon of a URI for a word of its own
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        [ "$COMP_CWORD" = 1 ] && mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -W "socket:// ipp:// ipps:// lpd://" -- "$word")
      fi
      ;;
  esac
}
complete -o nospace -o filenames -F _vorantis_autosetup_explain vorantis-autosetup-explain
