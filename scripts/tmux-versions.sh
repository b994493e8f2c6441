#!/usr/bin/env bash
# Unpacks the tmux of other Debian releases into a folder, with their libraries, so that the tests can compare them; nothing
# is installed. Each release's program is then FOLDER/<version>/tmux. What is there already is kept. This system's own
# release is among those only when it is named.
#
#   scripts/tmux-versions.sh [FOLDER [RELEASE...]]      build/tmux-versions bookworm trixie testing sid
#
# The packages come from the mirror that apt uses on this machine and are checked with the machine's keys. A release that
# cannot be had is left out, with a word about why. The last line names the versions, the installed one among them. With
# fewer than two different ones there is nothing to compare, and the script fails.
set -euo pipefail
cd "$(dirname "$0")/.."

folder=$(realpath -m "${1:-build/tmux-versions}")
shift || true
releases=("${@:-}")
if [ -z "${releases[0]}" ]; then
  own=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
  mapfile -t releases < <(printf '%s\n' bookworm trixie testing sid | grep -vxF "${own:-none}")
fi
mkdir -p "$folder"

# The first place that apt has Debian's own packages from, and Debian's keys.
mirror=$(apt-get indextargets --format "\$(REPO_URI)" 'Created-By: Packages' 'Label: Debian' 2>/dev/null | head -n 1) || true
keys=/usr/share/keyrings/debian-archive-keyring.gpg

# apt for one release, with lists and a cache of its own, which knows of no installed package.
apt_of() {
  local root=$1 program=$2
  shift 2
  APT_CONFIG=$root/apt.conf "$program" -qq "$@"
}

prepare_apt() {
  local root=$1 release=$2 signed
  mkdir -p "$root"/{lists,cache,debs}
  : >"$root/status"
  if [ -r "$keys" ]; then signed="[signed-by=$keys] "; fi
  echo "deb ${signed:-}$mirror $release main" >"$root/sources.list"
  cat >"$root/apt.conf" <<CONF
Dir::State "$root";
Dir::State::status "$root/status";
Dir::State::lists "$root/lists";
Dir::Cache "$root/cache";
Dir::Etc::sourcelist "$root/sources.list";
Dir::Etc::sourceparts "-";
Acquire::Languages "none";
Acquire::Retries "1";
Acquire::http::Timeout "20";
APT::Sandbox::User "root";
CONF
  apt_of "$root" apt-get update
}

# tmux and all that it needs, but for the packages that hold documents or what only other programs load.
packages_of() {
  apt_of "$1" apt-cache depends --recurse --no-recommends --no-suggests --no-conflicts --no-breaks --no-replaces --no-enhances tmux |
    grep -E '^[a-z]' | grep -vE '^gcc-.*-base$|^libc-gconv'
}

# unpack RELEASE: prints nothing when it has worked, else why it has not.
unpack() {
  local release=$1 root=$folder/.work-$1 version deb loader unpacked
  prepare_apt "$root" "$release" || { echo 'its package lists cannot be had'; return 1; }
  version=$(apt_of "$root" apt-cache show tmux | sed -nE 's/^Version: (.*)-[^-]*$/\1/p' | head -n 1)
  [ -n "$version" ] || { echo 'it has no tmux'; return 1; }
  if [ ! -x "$folder/$version/tmux" ]; then
    packages_of "$root" >"$root/packages"
    (cd "$root/debs" && xargs env APT_CONFIG="$root/apt.conf" apt-get -qq download <"$root/packages") ||
      { echo 'its packages cannot be had'; return 1; }
    unpacked=$root/unpacked
    mkdir -p "$unpacked"
    for deb in "$root"/debs/*.deb; do dpkg-deb -x "$deb" "$unpacked"; done
    loader=$(find "$unpacked" -name 'ld-linux*' | head -n 1)
    [ -n "$loader" ] || { echo 'it has no loader'; return 1; }
    rm -rf "${folder:?}/$version"
    mv "$unpacked" "$folder/$version"
    loader=$folder/$version${loader#"$unpacked"}
    cat >"$folder/$version/tmux" <<RUN
#!/bin/sh
exec "$loader" --library-path "$(find "$folder/$version" -name '*.so.*' -printf '%h\n' | sort -u | paste -sd :)" "$folder/$version/usr/bin/tmux" "\$@"
RUN
    chmod +x "$folder/$version/tmux"
  fi
  "$folder/$version/tmux" -V >/dev/null 2>&1 || { echo "its program (tmux $version) does not run here"; rm -rf "${folder:?}/$version"; return 1; }
  echo "$version" >"$folder/release-$release"
}

for release in "${releases[@]}"; do
  if "$folder/$(cat "$folder/release-$release" 2>/dev/null)/tmux" -V >/dev/null 2>&1; then
    continue
  elif [ -z "${mirror:-}" ]; then
    echo "tmux-versions: $release is left out: apt has no mirror of Debian here" >&2
  elif ! why=$(unpack "$release" 2>"$folder/log-$release"); then
    echo "tmux-versions: $release is left out: ${why:-see $folder/log-$release}" >&2
  fi
  rm -rf "$folder/.work-$release"
done

versions=$(
  if command -v tmux >/dev/null; then tmux -V; fi
  for program in "$folder"/*/tmux; do
    if [ -x "$program" ]; then "$program" -V || true; fi
  done
)
versions=$(sort -uV <<<"$versions" | sed '/^$/d')
count=$(grep -c . <<<"$versions" || true)
echo "tmux-versions: $count: $(paste -sd , <<<"$versions")"
if [ "$count" -lt 2 ]; then
  echo 'tmux-versions: the tests need two versions at least' >&2
  exit 1
fi
