# Velmora's shell integration for zsh 5.3 and newer. It marks the prompt and each command for the terminal
# (OSC 133) and notes the last command's number, times and exit status for the bridge. No process is started at
# a prompt, and nothing of the user's is replaced: it adds a function to each of two hooks and marks PS1.
# All of it runs with zsh's own options, whatever the user has set.
[[ ! -o 'interactive' ]] || 'builtin' 'emulate' '-R' 'zsh' '-o' 'noaliases' '-o' 'localtraps' '-c' '
  if [[ ${TERM:-dumb} != (dumb|linux) && ${(t)PS1} != *readonly* && -z ${functions[__velmora_precmd]} ]] &&
    zmodload -F zsh/datetime p:epochtime 2>/dev/null
  then
    typeset -g __velmora_began=0 __velmora_number=0 __velmora_file="" __velmora_tty=${${TTY#/dev/}//\//-}
    typeset -g __velmora_a __velmora_b __velmora_head __velmora_record
    builtin printf -v __velmora_a "%%{\e]133;A\a%%}"
    builtin printf -v __velmora_b "%%{\e]133;B\a%%}"

    # What every record begins with: version, process, its start in ticks (0 where the system does not tell),
    # and which of the shells it is that may run in this process one after the other.
    () {
      local start=""
      if [[ -r /proc/$$/stat ]]; then builtin read -r start </proc/$$/stat; fi
      start=${${=start##*\) }[20]:-0}
      __velmora_head="1 $$ $start $(( epochtime[1] * 1000000 + epochtime[2] / 1000 ))"
      __velmora_record="$__velmora_head 0 0 0 0"
    }

    # A file for its owner alone, in the folder that the bridge has made; none without that folder.
    __velmora_find_file() {
      local folder
      __velmora_file=""
      [[ $__velmora_tty == [a-z]* ]] || return 0
      for folder in "$__velmora_runtime" "$XDG_RUNTIME_DIR" /run/user/$UID "$TMPDIR" /tmp; do
        folder+=/app.velmora.Velmora
        [[ $folder == /?*/* && -O $folder && ! -L $folder ]] || continue
        [[ -d $folder/shells && -O $folder/shells && ! -L $folder/shells ]] || continue
        folder+=/shells/$__velmora_tty
        if [[ ! -e $folder && ! -L $folder ]]; then ( umask 077 && : >$folder ); fi
        if [[ -f $folder && -O $folder && ! -L $folder ]]; then __velmora_file=$folder; fi
        return 0
      done
    }

    __velmora_preexec() {
      __velmora_began=$(( epochtime[1] * 1000000 + epochtime[2] / 1000 ))
      if [[ -t 1 ]]; then builtin print -n "\e]133;C\a"; fi
    }

    __velmora_precmd() {
      local state=$?
      trap - DEBUG
      if (( __velmora_began )); then
        (( __velmora_number += 1 ))
        __velmora_record="$__velmora_head $__velmora_number $state $__velmora_began "
        __velmora_record+=$(( epochtime[1] * 1000000 + epochtime[2] / 1000 ))
        __velmora_began=0
        if [[ -t 1 ]]; then builtin print -n "\e]133;D;$state\a"; fi
      fi
      # Others may set the prompt anew each time, so this function is to be the last one.
      if [[ $precmd_functions[-1] != __velmora_precmd ]]; then
        precmd_functions=(${precmd_functions:#__velmora_precmd} __velmora_precmd)
      fi
      # Quiet where it may fail; to silence the whole function takes a sixth of its time.
      if [[ $PS1 != *$__velmora_b* ]]; then { PS1=$__velmora_a$PS1$__velmora_b } 2>/dev/null; fi
      if [[ ! -f $__velmora_file ]]; then __velmora_find_file; fi
      # As long as every record, and never cut to nothing first: some disks take milliseconds over that.
      if [[ -w $__velmora_file ]]; then
        builtin printf "%-127s\n" "$__velmora_record" 1<>$__velmora_file
      fi
    }

    precmd_functions+=(__velmora_precmd)
    preexec_functions+=(__velmora_preexec)
  fi
'
