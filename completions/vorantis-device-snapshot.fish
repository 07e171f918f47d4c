# SPDX-License-Identifier: MIT
# fish completion of vorantis-device-snapshot
complete -c vorantis-device-snapshot -f
complete -c vorantis-device-snapshot -n "not __fish_contains_opt check" -a "socket:// ipp:// ipps:// lpd://" -d "Device URI"
complete -c vorantis-device-snapshot -n "__fish_contains_opt check" -F
complete -c vorantis-device-snapshot -l ppd -r -F -d "Take the model name from the PPD"
complete -c vorantis-device-snapshot -l from-table -r -F -d "Make the snapshot of a table of media"
complete -c vorantis-device-snapshot -l check -d "Judge a snapshot against a PPD"
complete -c vorantis-device-snapshot -l ignore -x -a "profile-missing profile-elsewhere profile-permissions profile-collision" \
  -d "Leave warnings of this code out"
complete -c vorantis-device-snapshot -l allow-empty -d "A device without custom media is no error"
complete -c vorantis-device-snapshot -s h -l help -d "Show a summary of the options"
complete -c vorantis-device-snapshot -s V -l version -d "Show the version"
