# bash completion for toolkit

# Adds each name of a logger that begins with $1, if the logger has a log file of this user in /tmp. A name
# may contain any characters, so it is added quoted: the shell must not expand it.
_toolkit_add_loggers()
{
    local file name quoted
    for file in /tmp/*.qvlog; do
        [[ -O $file && -f $file && ! -L $file ]] || continue
        name=${file##*/}
        name=${name%.qvlog}
        printf -v quoted %q "$name"
        [[ $name == "$1"* || $quoted == "$1"* ]] && COMPREPLY+=("$quoted")
    done
}

_toolkit_options()
{
    case $1 in
    log) echo "--severity --function --text --regex --follow --json --help" ;;
    "zip list" | "zip search") echo "--filter --type --help" ;;
    "zip extract") echo "--limit --filter --type --help" ;;
    "ipc listen") echo "--count --help" ;;
    about) echo "--check --help" ;;
    "") echo "--version --help" ;;
    *) echo "--help" ;;
    esac
}

# The words that may follow a subcommand.
_toolkit_words()
{
    case $1 in
    "") echo "log ini zip ipc paths about" ;;
    ini) echo "list get check" ;;
    zip) echo "list cat search extract" ;;
    ipc) echo "send listen list" ;;
    esac
}

_toolkit()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]}
    [ "$COMP_CWORD" -eq 1 ] && command=
    case $command in
    ini | zip | ipc) [ "$COMP_CWORD" -gt 2 ] && command="$command ${COMP_WORDS[2]}" ;;
    esac

    local words
    case $previous in
    -s | --severity) words="error warning info debug verbose" ;;
    --type) words="all files directories" ;;
    *)
        case $current in
        -*) words=$(_toolkit_options "$command") ;;
        *) words=$(_toolkit_words "$command") ;;
        esac
        ;;
    esac
    # compgen expands its word list, so the list must contain fixed words only.
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    # If nothing matches, "-o default" below completes file names.
    [ -n "$words" ] || [ "$command" != log ] || _toolkit_add_loggers "$current"
}

complete -o default -F _toolkit toolkit
