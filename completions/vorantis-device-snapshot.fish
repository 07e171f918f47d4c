# SPDX-License-Identifier: MIT
# fish completion of vorantis-device-snapshot
complete -c vorantis-device-snapshot -f
complete -c vorantis-device-snapshot -s h -l help -d "Show a summary of the options"
complete -c vorantis-device-snapshot -s V -l version -d "Show the version"
