#!/usr/bin/env bash
# Installs the Debian packages on a Debian that has nothing else, uses them there as a user would, purges them and shows
# what is left; then boots that Debian and uses the bridge as a service: package-root-check.sh PACKAGES [FOLDER], where
# PACKAGES is the folder that scripts/package.sh has filled. Needs root, debootstrap, systemd-nspawn and Debian's archive; a
# few minutes, 1 GB. An existing FOLDER with such a system is used again.
set -euo pipefail

source=$(realpath "$(dirname "$0")/..")
packages=$(realpath "$1")
root=$(realpath -m "${2:-$(mktemp -d)}")
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8

inside() { chroot "$root" "$@"; }
as_user=(chroot "$root" setpriv --reuid ann --regid ann --clear-groups env -i HOME=/home/ann USER=ann
  SHELL=/bin/sh LC_ALL=C.UTF-8 PATH=/usr/bin:/bin XDG_RUNTIME_DIR=/run/ann QT_QPA_PLATFORM=offscreen)
end() {
  [ -z "${pid:-}" ] || kill "$pid" 2>/dev/null || true
  "${as_user[@]}" tmux kill-server 2>/dev/null || true
  ! mountpoint -q "$root/proc" || umount "$root/proc" "$root/dev/pts"
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

# apt COMMAND...: quiet, until it fails.
apt() {
  inside apt-get -y -qq --no-install-recommends "$@" >"$root/tmp/log" 2>&1 || { cat "$root/tmp/log"; exit 1; }
}
# start PROGRAM: until it serves beside a tmux of the user's.
start() {
  "${as_user[@]}" "$1" >"$root/tmp/log" 2>&1 &
  pid=$!
  for _ in $(seq 100); do
    "${as_user[@]}" velmora status >/dev/null 2>&1 && break
    sleep 0.1
  done
  echo "-- $1"
}
# A termination ends it well.
stop() {
  kill -TERM "$pid"
  wait "$pid"
  cat "$root/tmp/log"
}
use() {
  start "$1"
  "${as_user[@]}" velmora status
  "${as_user[@]}" velmora call terminal_list_sessions >/dev/null
  stop
}
# newer PACKAGE: the same files as another build of a later version.
newer() {
  rm -rf "$root/tmp/newer"
  dpkg-deb --raw-extract "$root/tmp/$1.deb" "$root/tmp/newer"
  sed -i -E '/^(Version: |Depends: velmora )/s/[0-9]-[0-9]+/&+newer/' "$root/tmp/newer/DEBIAN/control"
  dpkg-deb --root-owner-group -Znone --build "$root/tmp/newer" "$root/tmp/$1-newer.deb" >/dev/null
}

cp "$packages"/velmora_*.deb "$root/tmp/velmora.deb"
cp "$packages"/velmora-app_*.deb "$root/tmp/velmora-app.deb"
echo '== the bridge and the helper, with nothing that the package does not ask for'
apt install /tmp/velmora.deb
inside dpkg-query -W velmora
inside dpkg --verify velmora
if inside dpkg-query -W | grep -i '^libqt6\|^qt6-\|^qml6-'; then echo 'Qt came with it'; exit 1; fi
"${as_user[@]}" velmora --version
"${as_user[@]}" tmux -f /dev/null new-session -d -s work
use velmora-headless
install "$source/debian/tests/serves" "$root/tmp/serves"
"${as_user[@]}" /tmp/serves

echo '== the window besides'
apt install /tmp/velmora-app.deb
inside dpkg-query -W velmora-app
inside dpkg --verify velmora-app
use velmora-app

echo '== an upgrade beneath a bridge that runs: doctor says so until the bridge is restarted'
newer velmora
newer velmora-app
start velmora-headless
"${as_user[@]}" velmora doctor >"$root/tmp/doctor" || { cat "$root/tmp/doctor"; exit 1; }
apt install /tmp/velmora-newer.deb /tmp/velmora-app-newer.deb
inside dpkg-query -W velmora velmora-app
if "${as_user[@]}" velmora doctor >"$root/tmp/doctor"; then echo 'doctor finds nothing wrong'; exit 1; fi
grep '^FAIL' "$root/tmp/doctor" | tee "$root/tmp/faults"
[ "$(grep -c '^FAIL' "$root/tmp/faults")" = 1 ]
grep -q "process: velmora-headless, process $pid, runs a program that was replaced" "$root/tmp/faults"
stop
start velmora-headless
"${as_user[@]}" velmora doctor >"$root/tmp/doctor" || { cat "$root/tmp/doctor"; exit 1; }
stop
"${as_user[@]}" tmux kill-server

echo '== purge; what is left that was not there before'
apt purge --autoremove velmora velmora-app
files | comm -13 "$root/tmp/before" - | tee "$root/tmp/left"
if grep -v -E '^\./(home|run)/ann/' "$root/tmp/left" | grep -i velmora; then exit 1; fi

echo '== a service, on a booted system'
apt install systemd-sysv dbus-user-session libpam-systemd
apt install /tmp/velmora.deb
umount "$root/proc" "$root/dev/pts"
install "$source/tests/packaging/service.sh" "$root/usr/local/sbin/check-service"
cat >"$root/etc/systemd/system/check-service.service" <<'UNIT'
[Unit]
After=multi-user.target
SuccessAction=poweroff
FailureAction=poweroff
[Service]
Type=oneshot
ExecStart=/bin/sh -c 'check-service ann >/var/log/check-service 2>&1'
TimeoutStartSec=300
[Install]
WantedBy=graphical.target
UNIT
mkdir -p "$root/etc/systemd/system/graphical.target.wants"
ln -sfn ../check-service.service "$root/etc/systemd/system/graphical.target.wants/check-service.service"
rm -f "$root/var/log/check-service"
timeout 360 systemd-nspawn --quiet --directory="$root" --boot --register=no --keep-unit --link-journal=no \
  </dev/null >"$root/var/log/boot" 2>&1 || tail -n 20 "$root/var/log/boot"
cat "$root/var/log/check-service"
if grep -q FAIL "$root/var/log/check-service"; then exit 1; fi
