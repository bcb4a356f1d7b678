# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
# Completion of brevokctl for fish. Prefixes and targets come from the running application; it is not started for them.

function __brevokctl_ask -a call key
    dbus-send --session --print-reply=literal --reply-timeout=1000 --dest=org.freedesktop.DBus / \
        org.freedesktop.DBus.NameHasOwner string:com.tolvane.brevok 2>/dev/null | string match -q '*boolean true*'
    or return
    brevokctl --timeout 2 $call --json 2>/dev/null | string match -ra "(?<=\"$key\":\")[^\"]*"
end

# The words of the command line that are no options, without the program's name and the one that is being typed.
function __brevokctl_words
    string match -v -- '-*' (commandline -opc)[2..]
end

function __brevokctl_words_are
    test (string join ' ' (__brevokctl_words)) = "$argv"
end

complete -c brevokctl -f
complete -c brevokctl -l json -d 'Print one JSON document'
complete -c brevokctl -l timeout -x -d 'Longest wait for the answer, in seconds'
complete -c brevokctl -s h -l help -d 'Print a short help'
complete -c brevokctl -n '__brevokctl_words_are' -l version -d 'Print the version'

complete -c brevokctl -n '__brevokctl_words_are' -a status -d 'Session, packages, targets, installer'
complete -c brevokctl -n '__brevokctl_words_are' -a signin -d 'Sign in'
complete -c brevokctl -n '__brevokctl_words_are' -a signout -d 'Sign out'
complete -c brevokctl -n '__brevokctl_words_are' -a check -d 'Look for plug-in updates now'
complete -c brevokctl -n '__brevokctl_words_are' -a install -d 'Install packages'
complete -c brevokctl -n '__brevokctl_words_are' -a update -d 'Update packages'
complete -c brevokctl -n '__brevokctl_words_are' -a remove -d 'Remove packages'
complete -c brevokctl -n '__brevokctl_words_are' -a targets -d 'List or change the install targets'
complete -c brevokctl -n '__brevokctl_words_are' -a settings -d 'List or change the settings'
complete -c brevokctl -n '__brevokctl_words_are' -a converge -d 'Bring this machine to what its owner wants'
complete -c brevokctl -n '__brevokctl_words_are' -a metrics -d 'What monitoring reads'
complete -c brevokctl -n '__brevokctl_words_are' -a discard -d 'Forget unfinished actions'
complete -c brevokctl -n '__brevokctl_words_are' -a report -d 'Send a bug report, or show what would be sent'
complete -c brevokctl -n '__brevokctl_words_are' -a usage -d 'Show the usage report'
complete -c brevokctl -n '__brevokctl_words_are' -a open-panel -d 'Open the panel'
complete -c brevokctl -n '__brevokctl_words_are' -a quit -d 'End the program'

complete -c brevokctl -n '__fish_seen_subcommand_from install update; and not __fish_seen_subcommand_from targets' \
    -a '(__brevokctl_ask status prefix)' -d Package
complete -c brevokctl -n 'string match -q "remove*" -- (string join " " (__brevokctl_words))' \
    -a '(__brevokctl_ask status prefix)' -d Package
complete -c brevokctl -n '__brevokctl_words_are update' -l all -d 'Every package that waits for an update'

complete -c brevokctl -n '__brevokctl_words_are converge' -l dry-run -d 'Change nothing, tell what would be'
complete -c brevokctl -n '__brevokctl_words_are metrics' -l file -r -F -d 'Write them there'

complete -c brevokctl -n '__fish_seen_subcommand_from report' -l email -x -d 'Where answers go'
complete -c brevokctl -n '__fish_seen_subcommand_from report' -l note -x -d 'What happened'
complete -c brevokctl -n '__fish_seen_subcommand_from report usage' -l show -d 'Send nothing, print what would be sent'

complete -c brevokctl -n '__brevokctl_words_are targets' -a 'add remove enable disable'
complete -c brevokctl -n '__brevokctl_words_are targets add' -a '(__fish_complete_directories)'
complete -c brevokctl -n 'string match -q "targets add*" -- (string join " " (__brevokctl_words))' \
    -l type -x -a 'InDesign InCopy' -d 'Host application'
complete -c brevokctl -n 'string match -q "targets add*" -- (string join " " (__brevokctl_words))' \
    -l version -x -d 'Host version times ten'
for verb in remove enable disable
    complete -c brevokctl -n "__brevokctl_words_are targets $verb" -a '(__brevokctl_ask targets path)' -d Target
end

complete -c brevokctl -n '__brevokctl_words_are settings' -a 'get set'
for verb in get set
    complete -c brevokctl -n "__brevokctl_words_are settings $verb" \
        -a 'startAtLogin showNotifications checkForUpdates autoUpdate logLevel'
end
for setting in startAtLogin showNotifications checkForUpdates autoUpdate
    complete -c brevokctl -n "__brevokctl_words_are settings set $setting" -a 'yes no'
end
complete -c brevokctl -n '__brevokctl_words_are settings set logLevel' -a '0 1'
