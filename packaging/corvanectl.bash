# bash completion for corvanectl                                    -*- shell-script -*-

_comp_corvanectl() {
    local cur prev words cword
    _init_completion || return

    local commands="get set delete list post watch autostart --help"
    local signals="settings quitAgent openSettings checkForUpdates updateAvailable menuBarChanged"

    if ((cword == 1)); then
        COMPREPLY=($(compgen -W "$commands" -- "$cur"))
        return
    fi
    case ${words[1]} in
        get | set | delete)
            if ((cword == 2)); then
                # The keys come from the program itself, so a new setting needs no change here.
                local keys
                keys=$("${words[0]}" list 2>/dev/null | sed -n 's/ = .*//p')
                COMPREPLY=($(compgen -W "$keys" -- "$cur"))
            elif [[ ${words[1]} == set ]] && ((cword == 3)); then
                COMPREPLY=($(compgen -W "true false" -- "$cur"))
            elif [[ ${words[1]} == set ]] && ((cword == 4)); then
                COMPREPLY=($(compgen -W "--bool --double --string" -- "$cur"))
            fi
            ;;
        post)
            ((cword == 2)) && COMPREPLY=($(compgen -W "$signals" -- "$cur"))
            ;;
        watch)
            COMPREPLY=($(compgen -W "$signals" -- "$cur"))
            ;;
        autostart)
            ((cword == 2)) && COMPREPLY=($(compgen -W "on off status" -- "$cur"))
            ;;
    esac
} &&
    complete -F _comp_corvanectl corvanectl
