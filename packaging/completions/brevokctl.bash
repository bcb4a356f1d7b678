# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
# Completion of brevokctl for bash. Prefixes and targets come from the running application; it is not started for them.

_brevokctl_runs() {
    dbus-send --session --print-reply=literal --reply-timeout=1000 --dest=org.freedesktop.DBus / \
        org.freedesktop.DBus.NameHasOwner string:com.tolvane.brevok 2>/dev/null | grep -q 'boolean true'
}

# The texts under the key $2 in the answer to the call $1.
_brevokctl_ask() {
    _brevokctl_runs || return
    brevokctl --timeout 2 "$1" --json 2>/dev/null | grep -o "\"$2\":\"[^\"]*\"" | sed 's/^"[^"]*":"//; s/"$//'
}

# Offers those of the given words that begin with what was typed, as the shell has to read them.
_brevokctl_offer() {
    local typed=${COMP_WORDS[COMP_CWORD]} word quoted
    for word in "$@"; do
        printf -v quoted %q "$word"
        [[ $word == "$typed"* || $quoted == "$typed"* ]] && COMPREPLY+=("$quoted")
    done
}

_brevokctl() {
    COMPREPLY=()
    local commands='status signin signout check install update remove targets settings converge metrics discard report usage
        open-panel quit'
    local settings='startAtLogin showNotifications checkForUpdates autoUpdate logLevel'
    local words=() index given=
    for ((index = 1; index < COMP_CWORD; index++)); do
        case ${COMP_WORDS[index]} in
        --timeout | --type | --email | --note | --file) ((index++)) ;;
        --version) [[ ${words[0]-} == targets ]] && ((index++)) ;;
        -*) ;;
        *) words+=("${COMP_WORDS[index]}") ;;
        esac
    done
    case ${COMP_WORDS[COMP_CWORD - 1]} in
    --type) _brevokctl_offer InDesign InCopy; return ;;
    --file) compopt -o default; return ;;
    --timeout | --version | --email | --note) return ;;
    esac
    if [[ ${COMP_WORDS[COMP_CWORD]} == -* ]]; then
        given='--json --timeout --help'
        case ${words[*]} in
        '') given+=' --version' ;;
        update) given+=' --all' ;;
        converge) given+=' --dry-run' ;;
        metrics) given+=' --file' ;;
        report) given+=' --email --note --show' ;;
        usage) given+=' --show' ;;
        'targets add'*) given+=' --type --version' ;;
        esac
        # shellcheck disable=SC2086
        _brevokctl_offer $given
        return
    fi
    local IFS=$'\n'
    case "${words[*]}" in
    '') IFS=$' \n'; _brevokctl_offer $commands ;;
    install* | update* | remove*) _brevokctl_offer $(_brevokctl_ask status prefix) ;;
    targets) _brevokctl_offer add remove enable disable ;;
    targets$'\n'add) compopt -o dirnames ;;
    targets$'\n'remove | targets$'\n'enable | targets$'\n'disable) _brevokctl_offer $(_brevokctl_ask targets path) ;;
    settings) _brevokctl_offer get set ;;
    settings$'\n'get | settings$'\n'set) IFS=' '; _brevokctl_offer $settings ;;
    settings$'\n'set$'\n'logLevel) _brevokctl_offer 0 1 ;;
    settings$'\n'set$'\n'*) [[ ${#words[@]} == 3 ]] && _brevokctl_offer yes no ;;
    esac
}
complete -F _brevokctl brevokctl
