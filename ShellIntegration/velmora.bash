# Velmora's shell integration for bash 5.1 and newer. It marks the prompt and each command for the terminal
# (OSC 133) and notes the last command's number, times and exit status for the bridge. No process is started at
# a prompt, and nothing of the user's is replaced: it hangs itself on PROMPT_COMMAND, PS0 and the end of PS1.
if [[ $- == *i* && ${TERM:-dumb} != dumb && ${TERM-} != linux ]] &&
  ((BASH_VERSINFO[0] * 100 + BASH_VERSINFO[1] >= 501)); then

  __velmora_begin() {
    local - start='' all IFS=' '
    builtin set +aCeEfTux
    all="${PS0@a}${PS1@a}${PROMPT_COMMAND@a}"
    [[ $all != *r* ]] || return 0 # what may not be changed
    if [[ ${__velmora_shell-} != "$$" ]]; then
      __velmora_shell=$$ __velmora_began=0 __velmora_number=0 __velmora_nothing='' __velmora_file=''
      if [[ -r /proc/$$/stat ]]; then builtin read -r start <"/proc/$$/stat"; fi
      builtin set -f
      # shellcheck disable=SC2206
      all=(${start##*) })
      # What every record begins with: version, process, its start in ticks (0 where the system does not
      # tell), and which of the shells it is that may run in this process one after the other.
      __velmora_head="1 $$ ${all[19]:-0} ${EPOCHREALTIME//[!0-9]/}"
      __velmora_record="$__velmora_head 0 0 0 0"
      __velmora_tty=$(builtin command tty 2>/dev/null)
      __velmora_tty=${__velmora_tty#/dev/}
      __velmora_tty=${__velmora_tty//\//-}
    fi
    if [[ ${PROMPT_COMMAND[*]} != *__velmora_prompt* ]]; then
      # The first stays the user's: it is what PROMPT_COMMAND=... changes.
      PROMPT_COMMAND=("${PROMPT_COMMAND[@]:-}" __velmora_prompt)
    fi
  }

  # A file for its owner alone, in the folder that the bridge has made; none without that folder.
  __velmora_find_file() {
    local folder
    __velmora_file=''
    [[ $__velmora_tty == [a-z]* ]] || return 0
    for folder in "${__velmora_runtime-}" "${XDG_RUNTIME_DIR-}" "/run/user/$UID" "${TMPDIR-}" /tmp; do
      folder+=/app.velmora.Velmora
      [[ $folder == /?*/* && -O $folder && ! -L $folder ]] || continue
      [[ -d $folder/shells && -O $folder/shells && ! -L $folder/shells ]] || continue
      folder+=/shells/$__velmora_tty
      if [[ ! -e $folder && ! -L $folder ]]; then (umask 077 && builtin : >"$folder"); fi
      if [[ -f $folder && -O $folder && ! -L $folder ]]; then __velmora_file=$folder; fi
      return 0
    done
  }

  __velmora_prompt() {
    local velmora_status=$? -
    builtin set +aCeEfTux
    local ended=''
    if ((__velmora_began)); then
      ((__velmora_number += 1))
      __velmora_record="$__velmora_head $__velmora_number $velmora_status"
      __velmora_record+=" $__velmora_began ${EPOCHREALTIME//[!0-9]/}"
      __velmora_began=0 ended=$'\e]133;D;'$velmora_status$'\a'
    fi
    # Others may set the prompts anew each time.
    if builtin shopt -q promptvars && [[ ${PS0-} != *__velmora_began=* ]]; then
      # shellcheck disable=SC2016
      PS0=${PS0-}'\e]133;C\a${__velmora_nothing:$((__velmora_began=${EPOCHREALTIME//[!0-9]/}))}'
    fi
    if [[ -n ${PS1-} && $PS1 != *'\e]133;B'* ]]; then PS1+='\[\e]133;B\a\]'; fi
    if [[ -t 1 ]]; then builtin printf '%s\e]133;A\a' "$ended"; fi
    if [[ ! -f $__velmora_file ]]; then __velmora_find_file; fi
    # As long as every record, and never cut to nothing first: some disks take milliseconds over that.
    if [[ -n $__velmora_file ]]; then builtin printf '%-127s\n' "$__velmora_record" 1<>"$__velmora_file"; fi
  } 2>/dev/null

  __velmora_begin
fi
