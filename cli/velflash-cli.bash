# bash completion for velflash-cli
# shellcheck shell=bash disable=SC2207 # the words hold no blanks

_velflash_cli() {
    local cur prev words cword split
    _init_completion -s || return
    local commands='chain check info read erase blank-check program verify lock unlock reset bsdl'
    local general='--cable --frequency --serial --description --port --server --adaptive --no-adaptive
        --yes --log --quiet --help --version'
    case $prev in
        -c | --cable)
            COMPREPLY=($(compgen -W 'ft2232 usb-blaster jlink jlink-ip digilent xilinx3 byteblaster
                ispdownload wiggler easyice' -- "$cur"))
            return ;;
        -e | --erase)
            COMPREPLY=($(compgen -W 'needed chip none' -- "$cur"))
            return ;;
        --format)
            COMPREPLY=($(compgen -W 'srec hex raw' -- "$cur"))
            return ;;
        -f | --frequency | --serial | --description | --port | --server | -o | --offset | --from | \
            --size | -s | --sectors)
            return ;;
    esac
    $split && return

    local command='' files=0 i
    for ((i = 1; i < cword; i++)); do
        case ${words[i]} in
            -c | --cable | -f | --frequency | --serial | --description | --port | --server | -o | \
                --offset | --from | --size | -s | --sectors | -e | --erase | --format) ((i++)) ;;
            -*) ;;
            *) if [[ -z $command ]]; then command=${words[i]}; else ((files++)); fi ;;
        esac
    done

    if [[ $cur == -* ]]; then
        local own=''
        case $command in
            read) own='--from --size --format' ;;
            erase) own='--offset --sectors --from --size' ;;
            blank-check) own='--offset --from --size' ;;
            program) own='--offset --erase --no-verify' ;;
            verify) own='--offset' ;;
            lock | unlock) own='--all --sectors --from --size' ;;
        esac
        COMPREPLY=($(compgen -W "$general $own" -- "$cur"))
        return
    fi
    case $command:$files in
        :*) COMPREPLY=($(compgen -W "$commands" -- "$cur")) ;;
        chain:* | reset:*) ;;
        bsdl:0) _filedir '@(bsd|bsdl|bsm)' ;;
        *:0) _filedir velflash ;;
        read:1 | erase:1 | blank-check:1 | program:1 | verify:1) _filedir ;;
    esac
} && complete -F _velflash_cli velflash-cli
