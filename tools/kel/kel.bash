# Bash completion for kel. Asks the tool itself for commands, options and formats, so that it is never behind.

_kel_formats() {
    kel formats 2>/dev/null | awk 'NR > 2 && NF == 0 { exit } NR > 2 { print $1 }'
}

_kel_words() {
    kel "$@" --help 2>/dev/null | grep -oE '(^| |,)--[a-z-]+' | tr -d ' ,' | sort -u
}

_kel() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} words=
    local command=${COMP_WORDS[1]}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        words="$(kel --help 2>/dev/null | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p') help --help --version"
    elif [ "$command" != map ] && { [ "$previous" = --to ] || [ "$previous" = --from ]; }; then
        words=$(_kel_formats)
    elif [ "$command" = help ]; then
        words="$(kel --help 2>/dev/null | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')"
    elif [ "$previous" = --target ]; then
        words="default solver partitioned-post post"
    elif [ "$previous" = --precision ]; then
        words="single double"
    elif [ "$previous" = --compress ]; then
        words="0 1 2 3 4 5 6 7 8 9"
    elif [[ $current == -* ]]; then
        words=$(_kel_words "$command")
    elif [ "$command" = conform ]; then
        words=$(_kel_formats)
    fi
    if [ -n "$words" ]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}

complete -F _kel kel
