# SPDX-License-Identifier: MIT
# fish completion of VorantisAutosetupTool: DEVICE-URI PPD-PATH [PRINTER-ID]
complete -c VorantisAutosetupTool -n "test (count (commandline -opc)) -ne 2" -f
