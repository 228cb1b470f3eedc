# Completion of zendrix-inspect(1) in fish.
set -l commands events follow log desc hash risk settings ini smtp valid token alerts status alert decide act wizard \
    checked link portal quarantine grid
set -l none "not __fish_seen_subcommand_from $commands"
function __zendrix_grid
    __fish_seen_subcommand_from grid; and __fish_seen_subcommand_from $argv
end
complete -c zendrix-inspect -f
complete -c zendrix-inspect -n $none -a "$commands"
complete -c zendrix-inspect -n $none -l folder -x -a "(__fish_complete_directories)" -d "Folder with all files"
complete -c zendrix-inspect -n $none -l write -d "Let changes reach the files"
complete -c zendrix-inspect -n $none -l edition -x -a "Home Administrator"
complete -c zendrix-inspect -n $none -l agent -x -a "running stopped missing" -d "In place of the service manager's answer"
complete -c zendrix-inspect -n $none -l answer -x -a "yes no" -d "Answer to every question"
complete -c zendrix-inspect -n $none -l pretty -d "Indent the document"
complete -c zendrix-inspect -n $none -s h -l help -d "Print a short help"
complete -c zendrix-inspect -n "__fish_seen_subcommand_from follow; and not __fish_seen_subcommand_from grid" -l live
complete -c zendrix-inspect -n "__fish_seen_subcommand_from grid" -l file -r -F -d "Another monitoring file"
set -l parts sort save follow filter find replay state slots
complete -c zendrix-inspect -n "__fish_seen_subcommand_from grid; and not __fish_seen_subcommand_from $parts" -a "$parts"
complete -c zendrix-inspect -n "__zendrix_grid filter" -l host -x
complete -c zendrix-inspect -n "__zendrix_grid filter" -l monitor -x
complete -c zendrix-inspect -n "__zendrix_grid filter" -l change -x
complete -c zendrix-inspect -n "__zendrix_grid filter" -l desc -x
complete -c zendrix-inspect -n "__zendrix_grid filter" -l from -x
complete -c zendrix-inspect -n "__zendrix_grid filter" -l to -x
complete -c zendrix-inspect -n "__zendrix_grid find" -l match-case
complete -c zendrix-inspect -n "__zendrix_grid find" -l times -x
complete -c zendrix-inspect -n "__zendrix_grid slots" -l nslots -x
complete -c zendrix-inspect -n "__zendrix_grid slots" -l tslots -x
complete -c zendrix-inspect -n "__zendrix_grid slots" -l tchart -x -a "D T"
complete -c zendrix-inspect -n "__fish_seen_subcommand_from decide" -a "block allow"
complete -c zendrix-inspect -n "__fish_seen_subcommand_from act" -a "do undo"
complete -c zendrix-inspect -n "__fish_seen_subcommand_from quarantine" -a "list restore"
complete -c zendrix-inspect -n "__fish_seen_subcommand_from settings" -a "save check"
complete -c zendrix-inspect -n "__fish_seen_subcommand_from smtp" -a save
complete -c zendrix-inspect -n "__fish_seen_subcommand_from valid" -a "email server"
complete -c zendrix-inspect -n "__fish_seen_subcommand_from portal" -a "feedback support newver survey tour"
complete -c zendrix-inspect -n "__fish_seen_subcommand_from log hash ini" -F
