# fish completion for quillon

complete -c quillon -f
complete -c quillon -l toggle -d 'Show the panel, or hide it when it is shown'
complete -c quillon -l show -d 'Show the panel'
complete -c quillon -l preferences -d 'Show the preferences'
complete -c quillon -l rebuild -d 'Build the index anew'
complete -c quillon -l quit -d 'End the running instance'
complete -c quillon -l background -d 'Start without a window'
complete -c quillon -l version -d 'Print the version'
complete -c quillon -l help -d 'Print a summary of the options'
