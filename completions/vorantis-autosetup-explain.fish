# SPDX-License-Identifier: MIT
# fish completion of vorantis-autosetup-explain
complete -c vorantis-autosetup-explain -s f -l format -x -a "text json html" -d "Form of the report"
complete -c vorantis-autosetup-explain -s o -l output -r -d "Also write the PPD"
complete -c vorantis-autosetup-explain -l summary -d "Show only the verdict, and each kind of warning"
complete -c vorantis-autosetup-explain -l warnings -d "Show only the verdict, and every warning"
complete -c vorantis-autosetup-explain -l full -d "Show everything"
complete -c vorantis-autosetup-explain -s m -l medium -x -d "Show only what is about this medium"
complete -c vorantis-autosetup-explain -l strict -d "Exit with 3 when there are warnings"
complete -c vorantis-autosetup-explain -s h -l help -d "Show a summary of the options"
complete -c vorantis-autosetup-explain -s V -l version -d "Show the version"
complete -c vorantis-autosetup-explain -n "test (count (commandline -opc)) -eq 1" -a "socket:// ipp:// ipps:// lpd://" -d "Device URI"
