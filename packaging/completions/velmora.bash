# bash completion for velmora. Belongs into the folder of bash-completion, as "velmora".

_velmora() {
  local current=${COMP_WORDS[COMP_CWORD]}
  local tools='terminal_status terminal_list_sessions terminal_get_active_session terminal_create_session
    terminal_send_command terminal_send_key terminal_read_output terminal_capture_screen terminal_focus_session'
  local words=
  COMPREPLY=()
  # How many words there are so far, the command, and the word before.
  case $COMP_CWORD:${COMP_WORDS[1]}:${COMP_WORDS[COMP_CWORD - 1]} in
    1:*) words='call status sessions history watch pause resume permit policy busy doctor config shell-integration --extended --help --version' ;;
    2:call:*) words="$tools --help" ;;
    3:call:*) words='-' ;;
    *:config:--ssh) ;;
    *:config:*)
      words='claude-desktop claude-code cursor vscode codex gemini-cli zed opencode openclaw openclaw-cli
        --apply --remove --dry-run --extended --ssh --help'
      ;;
    2:policy:*) words='safe selective --help' ;;
    2:busy:*) words='on own off --help' ;;
    2:shell-integration:*) words='bash zsh fish --help' ;;
    2:status:* | 2:sessions:* | 2:doctor:*) words='--json --help' ;;
    *:history:--since) ;;
    *:history:--tool) words=$tools ;;
    *:history:--session) words=$(_velmora_sessions) ;;
    *:history:*) words='--since --session --tool --json --help' ;;
    2:permit:*) words="$(_velmora_sessions) --help" ;;
    3:permit:*) words='managed allowed readOnly blocked' ;;
    2:watch:*) words='--plain --json --help' ;;
    2:pause:* | 2:resume:*) words='--help' ;;
  esac
  # shellcheck disable=SC2207 # the candidates are plain words
  COMPREPLY=($(compgen -W "$words" -- "$current"))
}

_velmora_sessions() { velmora sessions 2>/dev/null | awk 'NR > 1 { print $1 }'; }

complete -F _velmora velmora
