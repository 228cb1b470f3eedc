# Completion of zendrix(1) in fish.
complete -c zendrix -f
complete -c zendrix -l edition -x -a "Home Administrator" -d "Console to open"
complete -c zendrix -l folder -x -a "(__fish_complete_directories)" -d "Folder with all files"
complete -c zendrix -o ns -d "No splash window"
complete -c zendrix -o nv -d "First start after an update"
complete -c zendrix -l version -d "Print the version"
complete -c zendrix -l help -d "Print a short help"
