# Velmora's shell integration for fish 3.4 and newer. It marks the prompt and each command for the terminal
# (OSC 133; fish 4 itself marks all but where the input begins) and notes the last command's number and exit status
# for the bridge. No process is started at a prompt, and nothing of the user's is replaced but that fish_prompt ends
# with a mark.
if status is-interactive; and not functions -q __velmora_ended; and not string match -qr '^(dumb|linux|)$' -- "$TERM"
    # The number that follows each: arithmetic would take longer than all the rest. Once, after 5000, the bridge misses
    # an exit code.
    set -g __velmora_next (seq 2 5000) 1
    set -g __velmora_number 5000
    set -g __velmora_told
    set -g __velmora_failed
    set -g __velmora_file ''
    set -g __velmora_leaves '&\s*([;\n#]|$)|#|(^|[;\s(])(set|function|if|while|for|switch|begin|and|or)\s'
    set -g __velmora_tty (command tty 2>/dev/null | string replace -r '^/dev/' '' | string replace -a / -)
    set -g __velmora_places $__velmora_runtime $XDG_RUNTIME_DIR /run/user/(command id -u) $TMPDIR /tmp

    # What every record begins with: version, process, its start in ticks (0 where the system does not tell), and
    # which of the shells it is that may run in this process one after the other.
    set -g __velmora_head 1 $fish_pid 0 (random 1 2147483647)
    if test -r /proc/$fish_pid/stat
        read -l __velmora_stat </proc/$fish_pid/stat
        set __velmora_head[3] (string replace -r '.*\) ' '' -- $__velmora_stat | string split ' ')[20]
    end
    # fish has no clock of its own: the times at the end of a record are left open.

    # A file for its owner alone, in the folder that the bridge has made; none without that folder.
    function __velmora_find_file
        set -g __velmora_file ''
        string match -qr '^[a-z]' -- "$__velmora_tty"; or return 0
        for place in $__velmora_places
            set -l folder $place/app.velmora.Velmora
            string match -qr '^/.+/' -- $folder; and test -O $folder; and not test -L $folder; or continue
            test -d $folder/shells; and test -O $folder/shells; and not test -L $folder/shells; or continue
            set -l file $folder/shells/$__velmora_tty
            if not test -e $file; and not test -L $file
                command sh -c 'umask 077 && : >"$1"' sh $file 2>/dev/null
            end
            test -f $file; and test -O $file; and not test -L $file; and set -g __velmora_file $file
            return 0
        end
    end

    # Each builtin takes three microseconds, and `set` leaves $status alone.
    function __velmora_ended --on-event fish_postexec
        set __velmora_told $status
        set __velmora_number $__velmora_next[$__velmora_number]
        or __velmora_doubt "$argv"
        if not test -f "$__velmora_file"
            __velmora_find_file
            test -n "$__velmora_file"; or return 0
        end
        echo "$__velmora_head $__velmora_number $__velmora_told 0 0" >$__velmora_file
    end

    # Jobs in the background, `set` and the like leave the status of the command before them behind: was it the same?
    function __velmora_doubt
        set -l code $__velmora_told
        if test "$__velmora_failed" = "$__velmora_number $code"; and string match -qr $__velmora_leaves -- $argv
            set __velmora_told -
        end
        set __velmora_failed $__velmora_next[$__velmora_number] $code
    end

    # Once, when the configuration has been read: the prompt is the user's by now.
    function __velmora_begin --on-event fish_prompt
        functions -e __velmora_begin
        __velmora_find_file
        test -n "$__velmora_file"; and echo "$__velmora_head 0 0 0 0" >$__velmora_file
        if functions -q fish_prompt
            functions -c fish_prompt __velmora_prompt
            function fish_prompt
                __velmora_prompt
                printf '\e]133;B\a'
            end
        end
    end

    if string match -qr '^[0-3]\.' -- $version
        function __velmora_began --on-event fish_preexec
            echo -n \e]133\;C\a
        end
        function __velmora_over --on-event fish_postexec
            echo -n \e]133\;D\;$status\a
        end
        function __velmora_prompted --on-event fish_prompt
            echo -n \e]133\;A\a
        end
    end
end
