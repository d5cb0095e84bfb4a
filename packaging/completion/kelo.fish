complete -c kelo -f
complete -c kelo -l help -d 'Show the options and end'
complete -c kelo -l hidden -d 'Start with the window hidden'
complete -c kelo -l quick -d 'Measure without teaching the name first'
complete -c kelo -l show -d 'Start with the window, at login too'
complete -c kelo -l snapshot -r -a '(__fish_complete_directories)' -d 'Write a picture of every screen'
complete -c kelo -l version -d 'Show the version and end'
complete -c kelo -l wake-test -r -F -d 'Measure how well a name is heard'
