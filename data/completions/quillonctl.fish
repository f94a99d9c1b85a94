# fish completion for quillonctl

set -l commands match find pick open use init crawl watch status
set -l none "not __fish_seen_subcommand_from $commands"

complete -c quillonctl -f
complete -c quillonctl -n $none -a match -d 'Rank the paths on standard input'
complete -c quillonctl -n $none -a find -d 'Search folders'
complete -c quillonctl -n $none -a pick -d 'Choose a folder in the terminal'
complete -c quillonctl -n $none -a open -d 'Open folders as Return in the panel does'
complete -c quillonctl -n $none -a use -d 'Count that paths were opened'
complete -c quillonctl -n $none -a init -d 'Print what a shell reads at its start'
complete -c quillonctl -n $none -a crawl -d 'Print what would be indexed'
complete -c quillonctl -n $none -a watch -d 'Print what comes and goes in folders'
complete -c quillonctl -n $none -a status -d 'Print the state of the running Quillon'
complete -c quillonctl -n $none -l version -d 'Print the version'
complete -c quillonctl -l help -d 'Print a summary of the options'

set -l match '__fish_seen_subcommand_from match'
complete -c quillonctl -n $match -s n -l top -x -d 'Print at most this many paths'
complete -c quillonctl -n $match -l order -x -a 'path names' -d 'Rank by the whole path or names first'
complete -c quillonctl -n $match -l words -d 'Then print what has the words in any order'
complete -c quillonctl -n $match -l counts -r -F -d 'Use counts'
complete -c quillonctl -n $match -l repeat -x -d 'Run the query this many times'
complete -c quillonctl -n $match -s 0 -d 'Paths and answers end with a NUL byte'
complete -c quillonctl -n $match -l scores -d 'Print score, path and marked ranges'
complete -c quillonctl -n $match -l json -d 'Print an array of objects'
complete -c quillonctl -n $match -l stats -d 'Print size and times to standard error'

set -l find '__fish_seen_subcommand_from find'
complete -c quillonctl -n $find -l in -x -a '(__fish_complete_directories)' -d 'Search this folder'
complete -c quillonctl -n $find -l hidden -d 'Search hidden folders too'
complete -c quillonctl -n $find -s n -l top -x -d 'Print at most this many paths'
complete -c quillonctl -n $find -l order -x -a 'path names' -d 'Rank by the whole path or names first'
complete -c quillonctl -n $find -l no-words -d 'Print only what matches as typed'
complete -c quillonctl -n $find -s 0 -d 'End each path with a NUL byte'
complete -c quillonctl -n $find -l json -d 'Print an array of objects'
complete -c quillonctl -n $find -l relative -d 'Print paths as they lead from here'
complete -c quillonctl -n $find -l crawl -d 'Ask the disk, not an index'
complete -c quillonctl -n $find -l stats -d 'Say on standard error what has answered'

set -l pick '__fish_seen_subcommand_from pick'
complete -c quillonctl -n $pick -l height -x -d 'Use this many lines below the cursor'
complete -c quillonctl -n $pick -l best -d 'Do not ask when it is clear which one is meant'
complete -c quillonctl -n $pick -s 0 -d 'End the path with a NUL byte'

complete -c quillonctl -n '__fish_seen_subcommand_from open use' -F
complete -c quillonctl -n '__fish_seen_subcommand_from init' -a 'bash zsh fish'

set -l crawl '__fish_seen_subcommand_from crawl'
complete -c quillonctl -n $crawl -a '(__fish_complete_directories)'
complete -c quillonctl -n $crawl -l exclude -x -d 'Skip folders with this in their path'
complete -c quillonctl -n $crawl -l no-default-excludes -d 'Without the patterns that a user begins with'
complete -c quillonctl -n $crawl -l no-builtin-excludes -d 'Without the patterns that always hold'
complete -c quillonctl -n $crawl -l ext -x -d 'Print files with this extension too'
complete -c quillonctl -n $crawl -l hidden -d 'Print hidden folders too'
complete -c quillonctl -n $crawl -l threads -x -d 'Share the work between this many threads'
complete -c quillonctl -n $crawl -s 0 -d 'End each path with a NUL byte'
complete -c quillonctl -n $crawl -l stats -d 'Print numbers to standard error'

set -l watch '__fish_seen_subcommand_from watch'
complete -c quillonctl -n $watch -a '(__fish_complete_directories)'
complete -c quillonctl -n $watch -l latency -x -d 'Seconds from a change to its report'
complete -c quillonctl -n $watch -l window -x -d 'Seconds from a report to the update'
complete -c quillonctl -n $watch -l sweep -x -d 'Seconds between looks at folders that are not watched'
complete -c quillonctl -n $watch -l budget -x -d 'Watch at most this many folders'
complete -c quillonctl -n $watch -l hidden -d 'Hidden folders too'
complete -c quillonctl -n $watch -l dump -d 'Print the index when standard input asks'
complete -c quillonctl -n $watch -s 0 -d 'As --dump, and each path ends with a NUL byte'

set -l status_command '__fish_seen_subcommand_from status'
complete -c quillonctl -n $status_command -l json -d 'Print one object'
