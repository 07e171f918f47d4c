# SPDX-License-Identifier: MIT
# fish completion of vorantis-device-snapshot
complete -c vorantis-device-snapshot -f
complete -c vorantis-device-snapshot -l ppd -r -F -d "Take the model name from the PPD"
complete -c vorantis-device-snapshot -l from-table -r -F -d "Make the snapshot of a table of media"
complete -c vorantis-device-snapshot -l check -F -d "Judge a snapshot against a PPD"
complete -c vorantis-device-snapshot -l allow-empty -d "A device without custom media is no error"
complete -c vorantis-device-snapshot -s h -l help -d "Show a summary of the options"
complete -c vorantis-device-snapshot -s V -l version -d "Show the version"
