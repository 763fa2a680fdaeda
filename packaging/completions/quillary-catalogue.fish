complete -c quillary-catalogue -f
complete -c quillary-catalogue -l folder -x -a '(__fish_complete_directories)' -d 'The folder that is published'
complete -c quillary-catalogue -l port -x -d 'The port'
complete -c quillary-catalogue -l listen -x -d 'The address that is listened on'
complete -c quillary-catalogue -l code-page -x -d 'The code page of the databases'
complete -c quillary-catalogue -l connections-per-address -x -d 'How many connections one address may have'
complete -c quillary-catalogue -l patience -x -d 'How many seconds a client may take'
complete -c quillary-catalogue -l help -d 'Show the help'
complete -c quillary-catalogue -l version -d 'Show the version'
