# bash completion for velmora. Belongs into the folder of bash-completion, as "velmora".

_velmora() {
  local current=${COMP_WORDS[COMP_CWORD]}
  local words=
  COMPREPLY=()
  case $COMP_CWORD in
    1) words='call status doctor config --help --version' ;;
    2)
      case ${COMP_WORDS[1]} in
        call)
          words='terminal_status terminal_list_sessions terminal_get_active_session terminal_create_session
            terminal_send_command terminal_send_key terminal_read_output terminal_capture_screen
            terminal_focus_session --help'
          ;;
        config)
          words='claude-desktop claude-code cursor vscode codex gemini-cli zed opencode openclaw openclaw-cli
            --help'
          ;;
        status | doctor) words='--help' ;;
      esac
      ;;
    3) [ "${COMP_WORDS[1]}" = call ] && words='-' ;;
  esac
  # shellcheck disable=SC2207 # the candidates are plain words
  COMPREPLY=($(compgen -W "$words" -- "$current"))
}

complete -F _velmora velmora
