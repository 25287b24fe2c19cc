# Shared by ./ocifip, ./check and bench/run, which set `program` and `root` (the repository's folder) and
# source this with bash.
# shellcheck shell=bash
# shellcheck disable=SC2034 # what is set here is used there
# shellcheck disable=SC2154 # and the other way round

tool_packages=(g++ cmake ninja-build pkg-config libyang2-dev libxml2-dev libcli11-dev libsimdjson-dev nlohmann-json3-dev)
test_packages=(libgtest-dev clang-14 libclang-rt-14-dev clang-format-14 clang-tidy-14 cppcheck shellcheck
  python3 python3-jsonschema ccache dpkg-dev file groff-base
  openssh-server openssh-client python3-ncclient yangcli)
bench_packages=(libbenchmark-dev libxslt1-dev libyang-tools xsltproc valgrind python3) # the tests run the benchmarks, too
coverage_packages=(llvm-14)

# What the compiler cache has from one clone of the repository serves another.
export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1

# What the tool is made from, as far as it is there.
tool_sources=()
for source in CMakeLists.txt CMakePresets.json agent cmake host manageability platform records tool; do
  [[ -e $root/$source ]] && tool_sources+=("$root/$source")
done

tool=$root/build/release/bin/ocifip
# A build folder's stamp, the file `.built`, is dated at the start of its last build that succeeded, and
# holds the name of the repository's folder at that time.

say() { printf '%s: %s\n' "$program" "$*" >&2; }

die() {
  say "$*"
  exit 3
}

# Runs a command without a word, unless it fails: then all of its output is shown.
quietly() {
  local output status=0
  output=$("$@" </dev/null 2>&1) || status=$?
  ((status == 0)) || printf '%s\n' "$output" >&2
  return "$status"
}

# Prints those of the named Debian packages that are not installed.
missing_packages() {
  local installed package
  installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "$@" 2>/dev/null)
  for package in "$@"; do
    grep -qxF "$package installed" <<<"$installed" || printf '%s\n' "$package"
  done
}

apt_get() {
  quietly "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get -q -y --no-install-recommends -o DPkg::Lock::Timeout=600 "$@"
}

# Installs those of the named packages that are missing.
install_packages() {
  local as_root=() missing
  if [[ -z $(type -P apt-get) || -z $(type -P dpkg-query) ]]; then
    [[ $(type -P cmake) ]] || die "cmake is needed, and there is no apt-get to install it"
    return 0
  fi
  mapfile -t missing < <(missing_packages "$@")
  ((${#missing[@]})) || return 0
  if ((EUID != 0)); then
    [[ $(type -P sudo) ]] ||
      die "packages are missing, and only root can install them: apt-get install ${missing[*]}"
    as_root=(sudo)
  fi
  say "installing ${missing[*]}"
  # The lists of packages may be absent, or too old to be of use.
  apt_get install "${missing[@]}" 2>/dev/null ||
    { apt_get --error-on=any update; apt_get install "${missing[@]}"; } ||
    die "cannot install ${missing[*]}"
}

# Finds the sources, if any, that changed since a stamp was written. The date of a file's last change
# of any kind counts, so that old files that are moved or copied over new ones are found as well.
changed_since() {
  local stamp=$1
  shift
  find "${tool_sources[@]}" -cnewer "$stamp" "$@" -print -quit
}

tool_is_current() {
  local stamp=$root/build/release/.built
  [[ -x $tool && -e $stamp && $(<"$stamp") == "$root" && -z $(changed_since "$stamp") ]]
}

# Waits until no other call builds in this repository. The lock ends with unlock_build, or with the
# process.
lock_build() {
  { mkdir -p "$root/build" && exec {build_lock}>"$root/build/.lock"; } || die "cannot write to build/"
  flock "$build_lock"
}

unlock_build() { exec {build_lock}>&-; }

# build PRESET TARGET [ARGUMENT]...: configures, with further arguments for CMake, and builds.
build() {
  local preset=$1 target=$2 folder=$root/build/$1 fresh=() clean=()
  local stamp=$folder/.built cache=$folder/CMakeCache.txt
  shift 2
  # A build folder that was moved or copied with the repository is configured anew.
  if [[ -e $cache ]] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$cache"; then
    fresh=(--fresh)
  fi
  # Ninja goes by the dates of contents, and would miss an old file that took a newer one's place.
  if [[ -e $stamp && -n $(changed_since "$stamp" -type f ! -newer "$stamp") ]]; then
    clean=(--clean-first)
  fi
  mkdir -p "$folder" && printf '%s' "$root" >"$stamp.new" &&
    (cd "$root" && quietly cmake --preset "$preset" "${fresh[@]}" "$@") &&
    cmake --build "$folder" --target "$target" "${clean[@]}" &&
    mv "$stamp.new" "$stamp"
}
