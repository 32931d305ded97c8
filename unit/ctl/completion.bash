# Completion of unitctl for bash: source unit/ctl/completion.bash
# The words come from unitctl itself, so that they are always those of the build.

_unitctl() {
    local ctl="${COMP_WORDS[0]}" word="${COMP_WORDS[COMP_CWORD]}" verb="" words="" i
    for ((i = 1; i < COMP_CWORD; i++)); do
        case "${COMP_WORDS[i]}" in
        --instance | --scene | --ms | -n) ((i++)) ;;
        -*) ;;
        *)
            verb="${COMP_WORDS[i]}"
            break
            ;;
        esac
    done
    case "${COMP_WORDS[COMP_CWORD - 1]}" in
    --instance) words="$(ls "/tmp/tern-$(id -u)" 2>/dev/null)" ;;
    --scene) words="$("$ctl" complete scenes 2>/dev/null)" ;;
    *)
        case "$verb" in
        "") words="$("$ctl" complete verbs 2>/dev/null) --instance --json" ;;
        get | set | poke | list | watch) words="$("$ctl" list 2>/dev/null)" ;;
        down | up | press) words="$("$ctl" complete keys 2>/dev/null)" ;;
        scene) words="$("$ctl" complete scenes 2>/dev/null)" ;;
        trace) words="draw event var page" ;;
        start | run) words="--scene --lockstep --no-server" ;;
        esac
        ;;
    esac
    # shellcheck disable=SC2207  # the words hold no blanks
    COMPREPLY=($(compgen -W "$words" -- "$word"))
    if [ "${#COMPREPLY[@]}" = 0 ]; then
        # shellcheck disable=SC2207
        COMPREPLY=($(compgen -f -- "$word"))
    fi
}
complete -F _unitctl unitctl
