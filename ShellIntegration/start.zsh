# The .zshenv of a zsh that the bridge started; nobody else reads it. It gives the user's folder back, from which zsh
# reads everything further, and reads what zsh would have read here.
if [[ -n ${VELMORA_ZDOTDIR-} ]]; then export ZDOTDIR=$VELMORA_ZDOTDIR; else 'builtin' 'unset' ZDOTDIR; fi
'builtin' 'unset' VELMORA_ZDOTDIR VELMORA_ENV
if [[ -r ${ZDOTDIR-$HOME}/.zshenv ]]; then 'builtin' 'source' "${ZDOTDIR-$HOME}/.zshenv"; fi
