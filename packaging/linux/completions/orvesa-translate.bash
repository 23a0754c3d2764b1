# bash completion for orvesa-translate

_orvesa_translate() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local providers='openAI gemini anthropic xAI'
    local words=''
    case $previous in
        --perform) words='translateSelection polishSelection ocrTranslate settings' ;;
        --provider) words=$providers ;;
        --thinking) words='on off' ;;
        --mode) words='businessJapanese naturalJapanese traditionalChinese concise' ;;
        --to) words='Traditional\ Chinese Japanese English' ;;
        --model) ;;
        *)
            case ${COMP_WORDS[1]} in
                translate) words='--to --provider --model --thinking' ;;
                polish) words='--mode --provider --model --thinking' ;;
                prompt) words='--provider --model --thinking' ;;
                recognize)
                    compopt -o default
                    COMPREPLY=()
                    return
                    ;;
                doctor) words='--network' ;;
                autostart) [[ $COMP_CWORD -eq 2 ]] && words='on off status' ;;
                settings)
                    if [[ $COMP_CWORD -eq 2 ]]; then
                        words='list get set reset'
                    elif [[ $COMP_CWORD -eq 3 && $previous != list ]]; then
                        words=$(orvesa-translate settings list 2>/dev/null | sed -n 's/^\([A-Za-z.]*\)=.*/\1/p')
                    fi
                    ;;
                key)
                    if [[ $COMP_CWORD -eq 2 ]]; then
                        words='set clear status'
                    elif [[ $COMP_CWORD -eq 3 && $previous != status ]]; then
                        words=$providers
                    fi
                    ;;
                *)
                    if [[ $COMP_CWORD -eq 1 ]]; then
                        words='translate polish prompt recognize settings key autostart doctor --perform --version --help'
                    fi
                    ;;
            esac
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    local index
    for index in "${!COMPREPLY[@]}"; do
        printf -v "COMPREPLY[index]" %q "${COMPREPLY[index]}"
    done
}

complete -F _orvesa_translate orvesa-translate
