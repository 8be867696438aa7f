# fish completion for toolkit

# Whether the words between "toolkit" and the cursor are exactly the arguments.
function __toolkit_at
    set -l words (commandline -opc)
    test "$words[2..]" = "$argv"
end

# Whether the words after "toolkit" begin with the arguments.
function __toolkit_in
    set -l words (commandline -opc)
    set -l last (math 1 + (count $argv))
    test (count $words) -ge $last; and test "$words[2..$last]" = "$argv"
end

# Prints the names of loggers that have a log file of this user in /tmp. Skips links: their targets may be
# another user's.
function __toolkit_loggers
    for file in /tmp/*.qvlog
        test -O $file; and not test -L $file; and string replace -r '.*/(.*)\.qvlog$' '$1' $file
    end
end

complete -c toolkit -l help -d 'Print the usage'
complete -c toolkit -n '__toolkit_at' -l version -d 'Print the version'
complete -c toolkit -n '__toolkit_at' -f -a log -d 'Print a log in time order'
complete -c toolkit -n '__toolkit_at' -f -a ini -d 'Inspect an INI file'
complete -c toolkit -n '__toolkit_at' -f -a zip -d 'Inspect or extract a Zip archive'
complete -c toolkit -n '__toolkit_at' -f -a ipc -d 'Send and receive local messages'
complete -c toolkit -n '__toolkit_at' -f -a paths -d 'Print the directories and files that a program uses'
complete -c toolkit -n '__toolkit_at' -f -a about -d 'Print versions, or test the library'

complete -c toolkit -n '__toolkit_in log' -s s -l severity -x -a 'error warning info debug verbose' -d 'Only lines at least this severe'
complete -c toolkit -n '__toolkit_in log' -s f -l function -x -d 'Only lines logged by this function'
complete -c toolkit -n '__toolkit_in log' -s t -l text -x -d 'Only lines with this text'
complete -c toolkit -n '__toolkit_in log' -s e -l regex -x -d 'Only lines that match this regular expression'
complete -c toolkit -n '__toolkit_in log' -s F -l follow -d 'Keep printing new lines'
complete -c toolkit -n '__toolkit_in log' -s j -l json -d 'Print JSON'
complete -c toolkit -n '__toolkit_in log' -a '(__toolkit_loggers)'

complete -c toolkit -n '__toolkit_at ini' -f -a 'list get check'
complete -c toolkit -n '__toolkit_at zip' -f -a 'list cat search extract'
complete -c toolkit -n '__toolkit_at ipc' -f -a 'send listen list'

for command in list search extract
    complete -c toolkit -n "__toolkit_in zip $command" -l filter -x -d 'Only names that begin with this'
    complete -c toolkit -n "__toolkit_in zip $command" -l type -x -a 'all files directories' -d 'Only entries of this type'
end
complete -c toolkit -n '__toolkit_in zip extract' -l limit -x -d 'Maximum number of bytes to write'
complete -c toolkit -n '__toolkit_in ipc listen' -s n -l count -x -d 'Exit after this many messages'
complete -c toolkit -n '__toolkit_in about' -s c -l check -d 'Test the library'
