# Completes vorda's options, categories and items. The lists are the tool's own.

_vorda()
{
    local vorda=${COMP_WORDS[0]} word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
    local categories i entry=
    COMPREPLY=()

    # The command as it was typed, with its quotes; nothing in it is run to find out what it means.
    vorda=${vorda//[\"\'\\]/}
    [[ $vorda != '~/'* ]] || vorda=$HOME/${vorda#'~/'}

    [[ $before == -[dp] ]] && return
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W '-d -p -h' -- "$word")
        return
    fi

    # One entry is all that counts, or "list" and a category.
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
        -[dp]) ((i++)) ;;
        -*) ;;
        *) entry+=${COMP_WORDS[i]}\  ;;
        esac
    done
    [[ -z $entry || $entry == 'list ' ]] || return

    categories=$("$vorda" list 2>/dev/null | sed -n 's/^- \([a-z]*\):.*/\1/p')
    if [[ $entry == 'list ' ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$categories" -- "$word")
    elif [[ $word == *.* ]]; then
        # The listing goes to standard error, " - category.item : description".
        mapfile -t COMPREPLY < <(compgen -W "$("$vorda" list "${word%%.*}" 2>&1 >/dev/null |
            sed -n 's/^ - \([a-z]*\.[a-z0-9_]*\) *:.*/\1/p')" -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -W "$categories all list help" -- "$word")
        # A category may go on with a dot and an item.
        ((${#COMPREPLY[@]} == 1)) && [[ " $categories " == *[[:space:]]"${COMPREPLY[0]}"[[:space:]]* ]] &&
            compopt -o nospace 2>/dev/null
    fi
    return 0
}

complete -F _vorda vorda
