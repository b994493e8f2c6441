# fish completion for velmora. Belongs into vendor_completions.d.

complete -c velmora -f

# Whether the commands so far are as many as the first argument says, and the first of them is the second.
function __velmora_at
    set -l words (commandline -opc)
    test (count $words) -eq $argv[1]; or return 1
    test (count $argv) -eq 1; or test "$words[2]" = $argv[2]
end

complete -c velmora -n '__velmora_at 1' -a call -d 'Call one tool and print its payload as JSON'
complete -c velmora -n '__velmora_at 1' -a status -d 'Show the bridge, the terminal and its sessions'
complete -c velmora -n '__velmora_at 1' -a doctor -d 'Find out what is wrong and what to do about it'
complete -c velmora -n '__velmora_at 1' -a config -d 'Print what connects an MCP client'
complete -c velmora -s h -l help -d 'Print the use'
complete -c velmora -n '__velmora_at 1' -l version -d 'Print the version'

complete -c velmora -n '__velmora_at 2 call' -a terminal_status -d 'Is the bridge active, is the terminal there?'
complete -c velmora -n '__velmora_at 2 call' -a terminal_list_sessions -d 'List the tabs as sessions'
complete -c velmora -n '__velmora_at 2 call' -a terminal_get_active_session -d 'Find the session in front'
complete -c velmora -n '__velmora_at 2 call' -a terminal_create_session -d 'Open a window'
complete -c velmora -n '__velmora_at 2 call' -a terminal_send_command -d 'Type text and submit it'
complete -c velmora -n '__velmora_at 2 call' -a terminal_send_key -d 'Press a key'
complete -c velmora -n '__velmora_at 2 call' -a terminal_read_output -d 'Read the screen or the scroll-back'
complete -c velmora -n '__velmora_at 2 call' -a terminal_capture_screen -d 'Draw the tab into a PNG file'
complete -c velmora -n '__velmora_at 2 call' -a terminal_focus_session -d 'Bring a session to the front'
complete -c velmora -n '__velmora_at 3 call' -a - -d 'Read the arguments from standard input'

complete -c velmora -n '__velmora_at 2 config' -a claude-desktop -d 'Claude Desktop'
complete -c velmora -n '__velmora_at 2 config' -a claude-code -d 'Claude Code'
complete -c velmora -n '__velmora_at 2 config' -a cursor -d Cursor
complete -c velmora -n '__velmora_at 2 config' -a vscode -d 'VS Code'
complete -c velmora -n '__velmora_at 2 config' -a codex -d Codex
complete -c velmora -n '__velmora_at 2 config' -a gemini-cli -d 'Gemini CLI'
complete -c velmora -n '__velmora_at 2 config' -a zed -d Zed
complete -c velmora -n '__velmora_at 2 config' -a opencode -d opencode
complete -c velmora -n '__velmora_at 2 config' -a openclaw -d OpenClaw
complete -c velmora -n '__velmora_at 2 config' -a openclaw-cli -d 'OpenClaw, by its commands'
