#!/usr/bin/env bash
# Uses the programs of scripts/tarball.sh on Debian 11, whose C library is 2.31: tarball-check.sh TARBALL. Needs root,
# debootstrap and Debian's archive. The system is kept in build/bullseye, or in the folder that VELMORA_BULLSEYE names; its
# tmux is too old, so the one of build/tmux-versions is lent to it. Prints OK or FAIL a check; the last line counts them.
set -euo pipefail
cd "$(dirname "$0")/.."

tarball=$(realpath "$1")
root=$(realpath -m "${VELMORA_BULLSEYE:-build/bullseye}")
versions=$PWD/build/tmux-versions

if [ "${VELMORA_INSIDE:-}" != "$$" ]; then
  scripts/tmux-versions.sh >&2
  [ -x "$root/usr/bin/apt-get" ] || debootstrap --variant=minbase bullseye "$root" >&2
  # In namespaces of its own: whatever is mounted and started in there ends with it.
  # shellcheck disable=SC2016 # for the inner shell
  exec unshare --mount --pid --fork --kill-child --propagation private \
    bash -c 'VELMORA_INSIDE=$$ exec "$@"' sh "$0" "$tarball"
fi

passed=0
failed=0
# check NAME WORDS COMMAND...: the command succeeds, and these words are in what it prints.
check() {
  local name=$1 words=$2 output status=0
  shift 2
  output=$("$@" 2>&1) || status=$?
  if [ "$status" = 0 ] && [[ $output == *"$words"* ]]; then
    echo "OK    $name"
    passed=$((passed + 1))
  else
    echo "FAIL  $name (status $status)"
    printf '%s\n' "$output" | head -n 40 | sed 's/^/      /'
    failed=$((failed + 1))
  fi
}

mount -t proc proc "$root/proc"
mount -t devpts -o newinstance,ptmxmode=0666,mode=0620,gid=5 devpts "$root/dev/pts"
mount -t tmpfs tmpfs "$root/opt"
mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
mkdir -p "$root$versions"
mount --bind -o ro "$versions" "$root$versions"
ln -sfn pts/ptmx "$root/dev/ptmx"
tar -x -C "$root/opt" --strip-components=1 -f "$tarball"
install -d -m 700 -o 1000 "$root/tmp/home"
ln -s "$(find "$versions" -mindepth 2 -maxdepth 2 -name tmux -path '*/3.5*' | head -n 1)" "$root/opt/bin/tmux"

as_user=(chroot "$root" setpriv --reuid 1000 --regid 1000 --clear-groups env -i HOME=/tmp/home XDG_RUNTIME_DIR=/tmp/home
  TMUX_TMPDIR=/tmp/home SHELL=/bin/sh LC_ALL=C.UTF-8 PATH=/opt/bin:/usr/bin:/bin)
call() { "${as_user[@]}" velmora call "$@"; }
reads() {
  local _
  for _ in $(seq 50); do
    call terminal_read_output "{\"sessionId\": \"$session\"}" | grep 'sum=42' && return
    sleep 0.1
  done
  return 1
}

watches() {
  local _
  for _ in $(seq 50); do
    "${as_user[@]}" tmux capture-pane -p -t people | grep 'velmora-1' && return
    sleep 0.1
  done
  "${as_user[@]}" tmux capture-pane -p -t people
  return 1
}
refuses_picture() {
  if call terminal_capture_screen "{\"sessionId\": \"$session\"}"; then return 1; fi
}

check 'this system has the C library 2.31' 2.31 chroot "$root" ldd --version
check 'velmora says its version' "velmora $(sed -nE 's/^project\(Velmora VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)" \
  "${as_user[@]}" velmora --version
"${as_user[@]}" velmora-headless &
bridge=$!
for _ in $(seq 100); do
  "${as_user[@]}" velmora status >/dev/null 2>&1 && break
  sleep 0.1
done
check 'velmora doctor finds nothing wrong' '' "${as_user[@]}" velmora doctor
check 'the bridge tells its status' '"mcpState": "active"' call terminal_status
session=$(call terminal_create_session | sed -nE 's/.*"sessionId": "([^"]+)".*/\1/p')
# shellcheck disable=SC2016 # for the shell in the session
check 'a command is delivered' delivered_to_terminal \
  call terminal_send_command "{\"sessionId\": \"$session\", \"command\": \"echo sum=\$((6*7)) 첫째 👩\"}"
check 'and what it prints is read' 'sum=42 첫째 👩' reads
check 'a picture is refused with the reason' 'this build of Velmora draws no pictures' refuses_picture
"${as_user[@]}" tmux new-session -d -s people -x 100 -y 30 velmora watch
check 'velmora watch shows the session' 'velmora-1' watches
"${as_user[@]}" tmux kill-server
kill -TERM "$bridge"
status=0
wait "$bridge" || status=$?
check 'a termination ends the bridge well' '' [ "$status" = 0 ]
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
