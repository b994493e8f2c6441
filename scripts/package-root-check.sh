#!/usr/bin/env bash
# Installs a Debian package on a Debian that has nothing else, uses it there as a user would, purges it and shows what
# is left: package-root-check.sh DEB [FOLDER]. Needs root, debootstrap and Debian's archive; a few minutes, 1 GB. An
# existing FOLDER with such a system is used again.
set -euo pipefail

deb=$(realpath "$1")
root=$(realpath -m "${2:-$(mktemp -d)}")
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8

inside() { chroot "$root" "$@"; }
as_user=(chroot "$root" setpriv --reuid ann --regid ann --clear-groups env -i HOME=/home/ann USER=ann
  SHELL=/bin/sh LC_ALL=C.UTF-8 PATH=/usr/bin:/bin XDG_RUNTIME_DIR=/run/ann QT_QPA_PLATFORM=offscreen)
end() {
  [ -z "${pid:-}" ] || kill "$pid" 2>/dev/null || true
  "${as_user[@]}" tmux kill-server 2>/dev/null || true
  umount "$root/proc" "$root/dev/pts"
}
# Without what the package manager keeps for itself.
files() {
  (cd "$root" && find . -xdev \( -path ./proc -o -path ./dev -o -path ./tmp -o -path ./var/cache -o -path ./var/lib/apt -o -path ./var/lib/dpkg \
    -o -path ./var/log \) -prune -o -not -type d -print | sort)
}

[ -x "$root/usr/bin/apt-get" ] || debootstrap --variant=minbase bookworm "$root" >&2
mountpoint -q "$root/proc" || mount -t proc proc "$root/proc"
mkdir -p "$root/dev/pts"
mountpoint -q "$root/dev/pts" || mount -t devpts -o newinstance,ptmxmode=0666,mode=0620,gid=5 devpts "$root/dev/pts"
ln -sfn pts/ptmx "$root/dev/ptmx"
trap end EXIT
inside id ann >/dev/null 2>&1 || inside useradd --create-home ann
install -d -m 700 -o "$(inside id -u ann)" "$root/run/ann"
inside apt-get update -qq
files >"$root/tmp/before"

echo '== install, with nothing that the package does not ask for'
cp "$deb" "$root/tmp/velmora.deb"
inside apt-get install -y -qq --no-install-recommends /tmp/velmora.deb >"$root/tmp/log" 2>&1 || { cat "$root/tmp/log"; exit 1; }
inside dpkg-query -W velmora
inside dpkg --verify velmora

echo '== the programs'
"${as_user[@]}" velmora --version
"${as_user[@]}" tmux -f /dev/null new-session -d -s work
for program in velmora-headless velmora-app; do
  inside test -x "/usr/bin/$program" || continue
  "${as_user[@]}" "$program" >"$root/tmp/log" 2>&1 &
  pid=$!
  for _ in $(seq 100); do
    "${as_user[@]}" velmora status >/dev/null 2>&1 && break
    sleep 0.1
  done
  echo "-- $program"
  "${as_user[@]}" velmora status
  "${as_user[@]}" velmora call terminal_list_sessions >/dev/null
  kill -TERM "$pid"
  wait "$pid"
  cat "$root/tmp/log"
done
"${as_user[@]}" tmux kill-server

echo '== purge; what is left that was not there before'
inside apt-get purge -y -qq --autoremove velmora >"$root/tmp/log" 2>&1 || { cat "$root/tmp/log"; exit 1; }
files | comm -13 "$root/tmp/before" - | tee "$root/tmp/left"
! grep -v -E '^\./(home|run)/ann/' "$root/tmp/left" | grep -i velmora
