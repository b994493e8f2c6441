# fish completion for velmora. Belongs into vendor_completions.d.

complete -c velmora -f

# Whether the words so far are as many as the first argument says, and the command is the second.
function __velmora_at
    set -l words (commandline -opc)
    test (count $words) -eq $argv[1]; or return 1
    test (count $argv) -eq 1; or test "$words[2]" = $argv[2]
end

# Whether the command is the first argument, and the word before is the second, or else none that wants a value.
function __velmora_after
    set -l words (commandline -opc)
    test (count $words) -gt 1; and test "$words[2]" = $argv[1]; or return 1
    test (count $argv) -gt 1; and test "$words[-1]" = $argv[2]; and return
    test (count $argv) -eq 1; and not contains -- "$words[-1]" --ssh --since --session --tool
end

function __velmora_tools
    printf '%s\t%s\n' \
        terminal_status 'Is the bridge active, is the terminal there?' \
        terminal_list_sessions 'List the tabs as sessions' \
        terminal_get_active_session 'Find the session in front' \
        terminal_create_session 'Open a window' \
        terminal_send_command 'Type text and submit it' \
        terminal_send_key 'Press a key' \
        terminal_read_output 'Read the screen or the scroll-back' \
        terminal_capture_screen 'Draw the tab into a PNG file' \
        terminal_focus_session 'Bring a session to the front'
end

function __velmora_sessions
    velmora sessions 2>/dev/null | awk 'NR > 1 { print $1 "\t" $2 " " $3 }'
end

complete -c velmora -n '__velmora_at 1' -a call -d 'Call one tool and print its payload as JSON'
complete -c velmora -n '__velmora_at 1' -a status -d 'Show the bridge, the terminal and its sessions'
complete -c velmora -n '__velmora_at 1' -a sessions -d 'List your sessions, and how to call each'
complete -c velmora -n '__velmora_at 1' -a history -d 'Show what agents asked for'
complete -c velmora -n '__velmora_at 1' -a watch -d 'Show sessions and what agents ask as it happens'
complete -c velmora -n '__velmora_at 1' -a pause -d 'Stop agents from typing and opening windows'
complete -c velmora -n '__velmora_at 1' -a resume -d 'End the pause'
complete -c velmora -n '__velmora_at 1' -a permit -d 'Change what agents may do with a session'
complete -c velmora -n '__velmora_at 1' -a policy -d 'Change how sessions are found'
complete -c velmora -n '__velmora_at 1' -a busy -d 'Allow or refuse input to programs that run'
complete -c velmora -n '__velmora_at 1' -a doctor -d 'Find out what is wrong and what to do about it'
complete -c velmora -n '__velmora_at 1' -a config -d 'Print what connects an MCP client, or connect it'
complete -c velmora -n '__velmora_at 1' -a shell-integration -d 'Print what tells how your commands ended'
complete -c velmora -n '__velmora_at 1' -l extended -d 'Serve MCP in the extended form of the tools'
complete -c velmora -s h -l help -d 'Print the use'
complete -c velmora -n '__velmora_at 1' -l version -d 'Print the version'

complete -c velmora -n '__velmora_at 2 call' -a '(__velmora_tools)'
complete -c velmora -n '__velmora_at 3 call' -a - -d 'Read the arguments from standard input'

complete -c velmora -n '__velmora_after config' -a claude-desktop -d 'Claude Desktop'
complete -c velmora -n '__velmora_after config' -a claude-code -d 'Claude Code'
complete -c velmora -n '__velmora_after config' -a cursor -d Cursor
complete -c velmora -n '__velmora_after config' -a vscode -d 'VS Code'
complete -c velmora -n '__velmora_after config' -a codex -d Codex
complete -c velmora -n '__velmora_after config' -a gemini-cli -d 'Gemini CLI'
complete -c velmora -n '__velmora_after config' -a zed -d Zed
complete -c velmora -n '__velmora_after config' -a opencode -d opencode
complete -c velmora -n '__velmora_after config' -a openclaw -d OpenClaw
complete -c velmora -n '__velmora_after config' -a openclaw-cli -d 'OpenClaw, by its commands'
complete -c velmora -n '__velmora_after config' -l apply -d 'Put it into the configuration of the client'
complete -c velmora -n '__velmora_after config' -l remove -d 'Take it out of there'
complete -c velmora -n '__velmora_after config' -l dry-run -d 'Say what either would change'
complete -c velmora -n '__velmora_after config' -l extended -d 'Offer the client the extended form of the tools'
complete -c velmora -n '__velmora_after config' -l ssh -d 'Of this machine, over SSH'

complete -c velmora -n '__velmora_at 2 status' -l json -d 'Print JSON'
complete -c velmora -n '__velmora_at 2 doctor' -l json -d 'Print JSON'
complete -c velmora -n '__velmora_at 2 sessions' -l json -d 'Print JSON'

complete -c velmora -n '__velmora_after history' -l since -d 'Only from so long ago on'
complete -c velmora -n '__velmora_after history' -l session -d 'Only of this session'
complete -c velmora -n '__velmora_after history' -l tool -d 'Only of this tool'
complete -c velmora -n '__velmora_after history' -l json -d 'Print JSON'
complete -c velmora -n '__velmora_after history --session' -a '(__velmora_sessions)'
complete -c velmora -n '__velmora_after history --tool' -a '(__velmora_tools)'

complete -c velmora -n '__velmora_at 2 watch' -l plain -d 'Print a line a request'
complete -c velmora -n '__velmora_at 2 watch' -l json -d 'Print a JSON object a line'

complete -c velmora -n '__velmora_at 2 permit' -a '(__velmora_sessions)'
complete -c velmora -n '__velmora_at 3 permit' -a managed -d 'Agents read and type'
complete -c velmora -n '__velmora_at 3 permit' -a allowed -d 'Agents read and type'
complete -c velmora -n '__velmora_at 3 permit' -a readOnly -d 'Agents read'
complete -c velmora -n '__velmora_at 3 permit' -a blocked -d 'Agents do neither'

complete -c velmora -n '__velmora_at 2 policy' -a safe -d 'Sessions are found as managed'
complete -c velmora -n '__velmora_at 2 policy' -a selective -d 'Sessions are found as read-only'

complete -c velmora -n '__velmora_at 2 busy' -a on -d 'Allow it'
complete -c velmora -n '__velmora_at 2 busy' -a own -d 'Allow it in windows that agents opened'
complete -c velmora -n '__velmora_at 2 busy' -a off -d 'Refuse it'

complete -c velmora -n '__velmora_at 2 shell-integration' -a 'bash zsh fish' -d 'The shell'
