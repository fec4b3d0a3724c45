# Completes vordascope's verbs and options, which are the tool's own, files, and the fields of a
# capture.

_vordascope()
{
    local scope=${COMP_WORDS[0]} word=${COMP_WORDS[COMP_CWORD]} verb=${COMP_WORDS[1]} i file=
    COMPREPLY=()

    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W "$("$scope" --help 2>/dev/null |
            sed -n '/^Subcommands:/,$s/^  \([a-z]*\) .*/\1/p') --help --version" -- "$word")
        return
    fi
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$("$scope" "$verb" --help 2>/dev/null |
            grep -o -e '--[a-z-]*')" -- "$word")
        return
    fi
    # The fields of the file that the command line names first.
    for ((i = 2; i < COMP_CWORD; i++)); do
        file=${COMP_WORDS[i]}
        [[ $verb != response || -r $file ]] || file=${file%#*}
        [[ $file != -* && -r $file ]] && break
        file=
    done
    if [[ $verb == @(series|response) && -n $file && -n $word ]]; then
        # The word as the shell will read it: names may hold blanks.
        word=${word//\\/}
        word=${word#[\"\']}
        # Columns of an array differ in their last index.
        mapfile -t COMPREPLY < <("$scope" series "$file" "$word*" 2>/dev/null | head -n 1 |
            tr , '\n' | sed 's/\[[0-9]*\]$//' | uniq | sed 's/[][ ()*?]/\\&/g')
        return
    fi
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
}

complete -F _vordascope vordascope
