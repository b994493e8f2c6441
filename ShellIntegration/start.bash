# All that a bash reads which the bridge started in POSIX mode; nobody else reads it. From here on it is the login
# shell that it would have been: it forgets how it was started and reads the user's files.
# shellcheck disable=SC1090,SC1091,SC2088
if [ -z "${BASH_VERSION-}" ]; then return 0; fi
\builtin unset -v POSIXLY_CORRECT
\builtin set +o posix
\builtin shopt -u inherit_errexit
if [[ -n ${VELMORA_ENV-} ]]; then ENV=$VELMORA_ENV; else \builtin unset -v ENV; fi
\builtin unset -v VELMORA_ENV VELMORA_ZDOTDIR
if [[ ${HISTFILE-} == "$HOME/.sh_history" || ${HISTFILE-} == '~/.sh_history' ]]; then HISTFILE=$HOME/.bash_history; fi

if [[ -r /etc/profile ]]; then . /etc/profile; fi
if [[ -r ~/.bash_profile ]]; then
  . ~/.bash_profile
elif [[ -r ~/.bash_login ]]; then
  . ~/.bash_login
elif [[ -r ~/.profile ]]; then
  . ~/.profile
fi
