# Bash completion of kestra: commands, their options, then file names.
_kestra() {
    local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} words=
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        words=$(_kestra_commands)
    elif [ "$command" = project ] && [ "$COMP_CWORD" -eq 2 ]; then
        words=$(_kestra_commands project)
    elif [[ $word == -* ]]; then
        [ "$command" = project ] && command="project ${COMP_WORDS[2]}"
        # The options that a command's help names, one at the start of a line each.
        # shellcheck disable=SC2086
        words="--help $("${COMP_WORDS[0]}" $command --help 2>/dev/null | grep -oE '(^|[ [,])--[a-z][a-z-]*' | tr -d ' [,')"
    fi
    if [ -n "$words" ]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}
# The names in the list of commands that the program gives itself.
_kestra_commands() {
    "${COMP_WORDS[0]}" "$@" --help 2>/dev/null | sed -n 's/^  \([a-z][a-z-]*\)  *[^ ].*/\1/p'
}
complete -o filenames -F _kestra kestra
