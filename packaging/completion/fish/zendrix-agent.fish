# Completion of zendrix-agent(8) in fish.
complete -c zendrix-agent -f
complete -c zendrix-agent -n __fish_is_first_token -a explain -d "Say what the risk of an alert is made of"
complete -c zendrix-agent -l once -d "Look once and end"
complete -c zendrix-agent -l for -x -d "End after so many seconds"
complete -c zendrix-agent -l start -d "Start an Agent that goes on by itself"
complete -c zendrix-agent -l stop -d "Stop the Agent of the folder"
complete -c zendrix-agent -l status -d "Print as JSON how the Agent watches"
complete -c zendrix-agent -l interval -x -d "Seconds between two looks"
complete -c zendrix-agent -l folder -x -a "(__fish_complete_directories)" -d "Folder of the files written"
complete -c zendrix-agent -l form -x -a "home admin" -d "Console that the lines are for"
complete -c zendrix-agent -l state -x -a "(__fish_complete_directories)" -d "Folder of both forms, for the service"
complete -c zendrix-agent -l plain -d "Use nothing that takes a right"
complete -c zendrix-agent -l help -d "Print a short help"
