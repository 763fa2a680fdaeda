complete -c quillary -f -a '(__fish_complete_suffix .pdb)'
complete -c quillary -l picture -r -d 'Save a picture of the window and end'
complete -c quillary -l help -d 'Show the help'
complete -c quillary -l version -d 'Show the version'
