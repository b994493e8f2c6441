#!/bin/sh
# The bridge as a service of a user's, on a system that systemd has booted: run there as root, by
# scripts/package-root-check.sh. Prints OK or FAIL a check.
user=$1
id=$(id -u "$user")

as_user() {
  setpriv --reuid "$user" --regid "$user" --clear-groups env -i HOME="/home/$user" USER="$user" SHELL=/bin/sh LC_ALL=C.UTF-8 \
    PATH=/usr/bin:/bin XDG_RUNTIME_DIR="/run/user/$id" "$@"
}
# check NAME COMMAND...: waits ten seconds for the command to succeed.
check() {
  name=$1
  shift
  for _ in $(seq 100); do
    if "$@" >/tmp/check.log 2>&1; then
      echo "OK    $name"
      return
    fi
    sleep 0.1
  done
  echo "FAIL  $name"
  sed 's/^/      /' /tmp/check.log
}
not() { ! "$@"; }
bridge() { as_user systemctl --user show --property MainPID --value velmora; }
tmux_server() { as_user tmux display-message -p '#{pid}'; }
replaced() { [ "$(bridge)" != 0 ] && [ "$(bridge)" != "$1" ]; }
serves() { as_user velmora status && as_user velmora call terminal_list_sessions; }
in_a_scope() { grep -q '\.scope$' "/proc/$(tmux_server)/cgroup"; }
same_shells() { [ "$(tmux_server)" = "$1" ]; }

check 'a user may linger' loginctl enable-linger "$user"
check 'the user has a service manager' as_user systemctl --user is-active default.target
check 'the unit is in order' as_user systemd-analyze --user --man=no verify /usr/lib/systemd/user/velmora.service
check 'the service is off until the user says otherwise' not as_user systemctl --user is-enabled velmora
check 'it starts, and is ready when systemctl returns' as_user systemctl --user enable --now velmora
if as_user velmora status >/dev/null; then echo 'OK    clients connect at once'; else echo 'FAIL  clients connect at once'; fi

check 'an agent opens a window' as_user velmora call terminal_create_session
check 'its tmux server has a scope of its own' in_a_scope
server=$(tmux_server)
check 'the service is restarted' as_user systemctl --user restart velmora
check 'and serves again' serves
check 'the shells live on' same_shells "$server"

before=$(bridge)
kill -9 "$before"
check 'a bridge that was killed is started again' replaced "$before"
check 'and serves again' serves
check 'the shells live on' same_shells "$server"

check 'the service is stopped' as_user systemctl --user stop velmora
check 'the shells live on' same_shells "$server"
as_user tmux kill-server

# Where no scope can be had, the server stays in the service, and outlives it all the same.
mv /usr/bin/systemd-run /usr/bin/systemd-run.away
check 'it starts where no scope can be had' as_user systemctl --user start velmora
check 'an agent opens a window' as_user velmora call terminal_create_session
check 'its tmux server stays in the service' not in_a_scope
server=$(tmux_server)
check 'the service is restarted' as_user systemctl --user restart velmora
check 'the shells live on' same_shells "$server"
as_user systemctl --user disable --now velmora
as_user tmux kill-server
mv /usr/bin/systemd-run.away /usr/bin/systemd-run
