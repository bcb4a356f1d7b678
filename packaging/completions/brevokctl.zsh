#compdef brevokctl
# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
# Completion of brevokctl for zsh. Prefixes and targets come from the running application; it is not started for them.

_brevokctl_runs() {
    dbus-send --session --print-reply=literal --reply-timeout=1000 --dest=org.freedesktop.DBus / \
        org.freedesktop.DBus.NameHasOwner string:com.tolvane.brevok 2>/dev/null | grep -q 'boolean true'
}

# Offers the texts under the key $2 in the answer to the call $1, described by $3.
_brevokctl_ask() {
    local -a found
    _brevokctl_runs || return 1
    found=("${(@f)$(brevokctl --timeout 2 $1 --json 2>/dev/null | grep -o "\"$2\":\"[^\"]*\"" | sed 's/^"[^"]*":"//; s/"$//')}")
    _wanted $2 expl $3 compadd -a found
}

_brevokctl_prefixes() { _brevokctl_ask status prefix package }
_brevokctl_paths() { _brevokctl_ask targets path target }

_brevokctl_targets() {
    if (( CURRENT == 2 )); then
        _values 'what to do' 'add[add a Plug-Ins folder]' 'remove[remove a target]' 'enable[enable a target]' 'disable[disable a target]'
    elif [[ $words[2] == add ]]; then
        _arguments '--type[host application]:type:(InDesign InCopy)' '--version[host version times ten]:version' ':' ':folder:_directories'
    else
        _brevokctl_paths
    fi
}

_brevokctl_settings() {
    case $CURRENT in
    2) _values 'what to do' 'get[print a setting]' 'set[change a setting]' ;;
    3) _values setting startAtLogin showNotifications checkForUpdates autoUpdate logLevel ;;
    4) [[ $words[2] == set ]] && if [[ $words[3] == logLevel ]]; then _values value 0 1; else _values value yes no; fi ;;
    esac
}

_brevokctl() {
    local curcontext=$curcontext state line
    typeset -A opt_args
    local -a commands=(
        'status:session, packages, targets, installer'
        'signin:sign in'
        'signout:sign out'
        'check:look for plug-in updates now'
        'install:install packages'
        'update:update packages'
        'remove:remove packages'
        'targets:list or change the install targets'
        'settings:list or change the settings'
        'converge:bring this machine to what its owner wants'
        'metrics:what monitoring reads'
        'discard:forget unfinished actions'
        'report:send a bug report, or show what would be sent'
        'usage:show the usage report'
        'open-panel:open the panel'
        'quit:end the program'
    )
    _arguments -C '--json[print one JSON document]' '--timeout[longest wait for the answer]:seconds' \
        '(- *)--version[print the version]' '(- *)'{-h,--help}'[print a short help]' \
        '1: :->command' '*:: :->arguments' && return
    case $state in
    command) _describe command commands ;;
    arguments)
        case $words[1] in
        install | remove) _brevokctl_prefixes ;;
        update) _alternative 'options:option:(--all)' 'packages:package:_brevokctl_prefixes' ;;
        targets) _brevokctl_targets ;;
        settings) _brevokctl_settings ;;
        metrics) _arguments '--file[write them there]:file:_files' ;;
        converge) _arguments '--dry-run[change nothing, tell what would be]' ;;
        report) _arguments '--email[where answers go]:address' '--note[what happened]:text' '--show[send nothing, print it]' ;;
        usage) _arguments '--show[print the usage report]' ;;
        esac
        ;;
    esac
}

_brevokctl "$@"
