#!/usr/bin/env bash
# Builds what is committed on Debian 13, with its compilers, Qt and tmux, where a warning is an error, and runs every test
# there: trixie-check.sh [gcc | clang], both unless told. For the hand, not for CI: the first run of both takes hours. Needs
# root, debootstrap and Debian's archive. The system is kept in build/trixie, or in the folder that VELMORA_TRIXIE names, and
# used again with what was built there. The last line counts the tests.
set -euo pipefail
cd "$(dirname "$0")/.."

case ${1:-both} in
  gcc) compilers=(g++) ;;
  clang) compilers=(clang++) ;;
  both) compilers=(g++ clang++) ;;
  -h | --help)
    sed -n '2,/^[^#]/s/^# //p' "$0"
    exit ;;
  *)
    echo "trixie-check: $1 is not gcc or clang" >&2
    exit 2 ;;
esac
root=$(realpath -m "${VELMORA_TRIXIE:-build/trixie}")

# In namespaces of its own: whatever is mounted and started in there ends with it. The system becomes the root, and not by
# chroot, in which tests could not make namespaces.
# shellcheck disable=SC2016 # for the inner shell
inside() {
  unshare --mount --pid --fork --kill-child --propagation private bash -ec '
    mount --bind "$0" "$0"
    cd "$0"
    mount -t proc proc proc
    mount -t sysfs -o ro sysfs sys
    mount --bind /dev dev
    mount -t devpts -o newinstance,ptmxmode=0666,mode=0620,gid=5 devpts dev/pts
    mount -t tmpfs -o mode=1777 tmpfs dev/shm
    mount -t tmpfs tmpfs run
    pivot_root . mnt
    umount -l /mnt
    exec env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
      CCACHE_DEPEND=1 CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime "$@"' "$root" "$@" </dev/null
}

if ! [ -x "$root/usr/bin/apt-get" ]; then
  debootstrap --variant=minbase trixie "$root" >&2
  # A thousand packages follow; a system that a crash spoils is made again.
  echo force-unsafe-io >"$root/etc/dpkg/dpkg.cfg.d/unsafe-io"
fi
# scripts/build.sh uses ccache where it is.
[ -x "$root/usr/bin/ccache" ] || inside sh -c 'apt-get update -qq && apt-get install -y -qq --no-install-recommends ccache' >&2

passed=0
failed=0
for compiler in "${compilers[@]}"; do
  tree=/src/$compiler
  # Only the files that differ get a new time, so only what they change is built again.
  [ -d "$root$tree/.git" ] || git init -q "$root$tree"
  git -C "$root$tree" fetch -q "$PWD" HEAD
  git -C "$root$tree" checkout -q --force --detach FETCH_HEAD
  log=$root$tree/build/trixie-check.log
  mkdir -p "${log%/*}"
  status=0
  inside sh -c "cd $tree && scripts/setup.sh && scripts/tmux-versions.sh &&
    $compiler --version | head -n 1 && qmake6 -query QT_VERSION && CXX=$compiler scripts/test.sh dev" 2>&1 | tee "$log" || status=$?
  counts=$(grep -E '^[0-9]+ passed, [0-9]+ failed$' "$log" | tail -n 1) || counts='0 passed, 1 failed'
  passed=$((passed + ${counts%% *}))
  counts=${counts#*, }
  failed=$((failed + ${counts%% *}))
  if [ "$status" != 0 ] && [ "$failed" = 0 ]; then failed=1; fi
done
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
