# SPDX-License-Identifier: MIT
# Completion of fwpipe's commands, options, types and properties in bash. It asks fwpipe, so it is always current.
# shellcheck disable=SC2207 # the words contain no blanks

_fwpipe_words() { # the completions of $2, the word after $1 in the command line of command $3; FILES for names of files
    case $1 in
    --config | --plugin | -o | --output) echo FILES && return ;;
    -C | --dir) echo FOLDERS && return ;;
    --format) echo dot svg mermaid html json && return ;;
    --set | --repeat | --head | --tail | --where) return ;;
    esac
    if [[ -z $3 ]]; then
        fwpipe --help 2>/dev/null | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p'
        echo --help --version
    elif [[ $2 == -* ]]; then
        fwpipe "$3" --help 2>/dev/null |
            sed -n '/^Options:/,/^$/s/^  \(-[A-Za-z],\)\{0,1\}\(--\{0,1\}[A-Za-z][a-z-]*\).*/\2/p'
    else
        case $3 in
        inspect | launch) fwpipe inspect 2>/dev/null | cut -d ' ' -f 1 | if [[ $3 == launch ]]; then grep '^E'; else cat; fi ;;
        new) echo plugin ;;
        esac
        [[ $3 == launch || $3 == new ]] || echo FILES
    fi
}

_fwpipe() {
    local current=${COMP_WORDS[COMP_CWORD]} command='' words type i
    ((COMP_CWORD < 2)) || command=${COMP_WORDS[1]}
    words=$(_fwpipe_words "${COMP_WORDS[COMP_CWORD - 1]}" "$current" "$command")
    if [[ $command == launch && $current != -* ]]; then # properties of the type before
        for ((i = COMP_CWORD - 1; i > 1; --i)); do
            type=${COMP_WORDS[i]}
            [[ $type != '!' ]] || break
            if [[ $type == E* && $type != *=* && ${COMP_WORDS[i - 1]} != '=' ]]; then
                words+=" $(fwpipe inspect "$type" 2>/dev/null | sed -n '/^properties$/,/^$/s/^  \([^ ][^ ]*\)  .*/\1=/p')"
                break
            fi
        done
    fi
    COMPREPLY=($(compgen -W "${words//FILES/}" -- "$current"))
    [[ $words != *FILES* ]] || COMPREPLY+=($(compgen -f -- "$current"))
    [[ $words != *FOLDERS* ]] || COMPREPLY=($(compgen -d -- "$current"))
    [[ $words != *F[IO]L* ]] || compopt -o filenames 2>/dev/null
    [[ ${#COMPREPLY[@]} != 1 || ${COMPREPLY[0]} != *= ]] || compopt -o nospace 2>/dev/null
}

complete -F _fwpipe fwpipe
