# Completion of unitctl for bash: source unit/ctl/completion.bash
# The words come from unitctl itself, so that they are always those of the build.

_unitctl() {
    local ctl="${COMP_WORDS[0]}" word="${COMP_WORDS[COMP_CWORD]}" verb="" words="" unit=() i
    for ((i = 1; i < COMP_CWORD; i++)); do
        case "${COMP_WORDS[i]}" in
        --instance)
            unit=(--instance "${COMP_WORDS[++i]}")
            ;;
        --scene | --ms | --port | -n) ((i++)) ;;
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
        do)
            # Without a unit nobody knows the modules.
            words="$("$ctl" "${unit[@]}" settings 2>/dev/null | cut -d " " -f 1 | sort -u)"
            if ((COMP_CWORD == i + 2)); then
                words="$("$ctl" "${unit[@]}" settings "${COMP_WORDS[i + 1]}" 2>/dev/null | cut -d " " -f 2)"
            fi
            ;;
        get | set | poke | list | watch) words="$("$ctl" list 2>/dev/null)" ;;
        down | up | press) words="$("$ctl" complete keys 2>/dev/null)" ;;
        hostile) words="off split storm unknown deaf silent torn truncate header restart" ;;
        scene) words="$("$ctl" complete scenes 2>/dev/null)" ;;
        trace) words="draw event var page" ;;
        start) words="--scene --lockstep --no-server --panel --port" ;;
        run) words="--scene --lockstep --no-server --no-panel --port" ;;
        panel) words="--port" ;;
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
