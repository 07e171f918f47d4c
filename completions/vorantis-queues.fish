# SPDX-License-Identifier: MIT
# fish completion of vorantis-queues
set -l commands status refresh apply explain
complete -c vorantis-queues -f
complete -c vorantis-queues -n "not __fish_seen_subcommand_from $commands" -a status -d "Tell which queues are out of date"
complete -c vorantis-queues -n "not __fish_seen_subcommand_from $commands" -a refresh -d "Set queues up again"
complete -c vorantis-queues -n "not __fish_seen_subcommand_from $commands" -a apply -d "Make the queues of a file so"
complete -c vorantis-queues -n "not __fish_seen_subcommand_from $commands" -a explain -d "The report of a queue's setup"
complete -c vorantis-queues -n "__fish_seen_subcommand_from status refresh explain" -a "(lpstat -e 2>/dev/null)"
complete -c vorantis-queues -n "__fish_seen_subcommand_from apply" -F
complete -c vorantis-queues -n "__fish_seen_subcommand_from status" -l all-drivers -d "List queues of other drivers too"
complete -c vorantis-queues -n "__fish_seen_subcommand_from status" -l json -d "Print JSON"
complete -c vorantis-queues -n "__fish_seen_subcommand_from status" -l openmetrics -d "Print metrics for a textfile collector"
complete -c vorantis-queues -n "__fish_seen_subcommand_from refresh" -l all -d "All queues but those edited by hand"
complete -c vorantis-queues -n "__fish_seen_subcommand_from apply" -l prune -d "Remove queues that are not in the file any more"
complete -c vorantis-queues -n "__fish_seen_subcommand_from refresh apply" -l dry-run -d "Say what would be done, change nothing"
complete -c vorantis-queues -n "__fish_seen_subcommand_from refresh apply" -l wait -x -d "Seconds that a job is waited for"
complete -c vorantis-queues -n "__fish_seen_subcommand_from refresh apply" -l settle -x -d "Seconds until the scheduler has written its state"
complete -c vorantis-queues -s h -l host -x -d "The scheduler"
complete -c vorantis-queues -l help -d "Show a summary of the options"
complete -c vorantis-queues -s V -l version -d "Show the version"
