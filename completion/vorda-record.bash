# Completes vorda-record's options and, with the lists of the vorda beside it, what it records.

_vorda_record()
{
    local record=${COMP_WORDS[0]} word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
    local vorda=vorda categories
    COMPREPLY=()

    [[ $before != -[nidp] && $before != --@(whole|ring|trigger) ]] || return
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$("$record" --help 2>/dev/null |
            grep -o -e '^  -.*' | grep -o -e '-[-a-z]*')" -- "$word")
        return
    fi
    [[ $record != */* ]] || vorda=${record%/*}/vorda
    categories=$("$vorda" list 2>/dev/null | sed -n 's/^- \([a-z]*\):.*/\1/p')
    if [[ $word == *.* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$("$vorda" list "${word%%.*}" 2>&1 >/dev/null |
            sed -n 's/^ - \([a-z]*\.[a-z0-9_]*\) *:.*/\1/p')" -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -W "$categories all" -- "$word")
    fi
    return 0
}

complete -F _vorda_record vorda-record
