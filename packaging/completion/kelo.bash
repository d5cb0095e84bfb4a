_kelo()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
    COMPREPLY=()
    case $before in
        --snapshot) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
        --wake-test) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
        *) mapfile -t COMPREPLY < <(compgen -W '--help --hidden --quick --show --snapshot --version --wake-test' -- "$word") ;;
    esac
}
complete -o filenames -F _kelo kelo
