#!/usr/bin/env bash
# Gets what the build needs, and nothing that is there already: Debian packages, and the sources of the two libraries
# that we compile ourselves, which go to deps/. Can be run again at any time, also after it was interrupted.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
deps="$root/deps"
archives="$deps/archives"

packages=(g++ cmake ninja-build patch rapidjson-dev libcli11-dev libglu1-mesa-dev libgtest-dev libbenchmark-dev
    libfreetype-dev libharfbuzz-dev libfontconfig-dev libzip-dev zlib1g-dev libtinyxml2-dev fonts-dejavu-core
    qt6-base-dev libqt6opengl6-dev libgif-dev libgl1-mesa-dri xvfb xauth)

# Name in deps/; Debian source package and version; the archive in it; its SHA-256; the folder below deps/NAME that
# receives the files; how many leading folders they lose; what is unpacked.
sources=(
    "box2d box2d=2.4.1-3 box2d_2.4.1.orig.tar.gz
     d6b4650ff897ee1ead27cf77a5933ea197cbeef6705638dd181adc2e816b23c2
     . 1 box2d-2.4.1/include box2d-2.4.1/src box2d-2.4.1/LICENSE"
    "poly2tri slic3r=1.3.0+dfsg1-5 slic3r_1.3.0+dfsg1.orig.tar.gz
     f03b1da7ad913aee2b061db233b1c1b42909a68db84eb340f3f74c18871bdc96
     poly2tri 4 Slic3r-1.3.0/xs/src/poly2tri"
)
# The Debian release whose source packages these are. An entry for source packages cannot change what gets installed.
source_suite=bookworm
source_list_name=jostle-sources.sources

say() { printf 'setup: %s\n' "$*"; }
fail() {
    printf 'setup: %s\n' "$@" >&2
    exit 1
}

has_source() { # name sha256
    [[ "$(cat "$deps/$1/.sha256" 2>/dev/null)" == "$2" ]]
}

# One line for each source that is not in deps/ as it should be, in the form of the table above.
missing_sources() {
    local entry name sum
    for entry in "${sources[@]}"; do
        read -r name _ _ sum _ <<<"${entry//$'\n'/ }"
        has_source "$name" "$sum" || printf '%s\n' "${entry//$'\n'/ }"
    done
}

missing_packages() {
    local installed
    installed=" $(dpkg-query -W -f '${db:Status-Status}:${Package}\n' "${packages[@]}" 2>/dev/null |
        sed -n 's/^installed://p' | tr '\n' ' ') "
    for package in "${packages[@]}"; do
        [[ "$installed" == *" $package "* ]] || printf '%s\n' "$package"
    done
}

is_debian() {
    command -v apt-get dpkg-query >/dev/null && grep -qx 'ID="\?debian"\?' /etc/os-release 2>/dev/null
}

# Prints the machine's own Debian entry as one for source packages of $source_suite: same place, same key. Reads both
# forms of apt's lists. Prints nothing if there is none.
source_list() {
    local codename sourcelist='' sourceparts=''
    # shellcheck disable=SC1091 # the system's own file
    codename="$(. /etc/os-release && printf '%s' "${VERSION_CODENAME:-}")"
    eval "$(apt-config shell sourcelist Dir::Etc::sourcelist/f sourceparts Dir::Etc::sourceparts/d)"
    local lists=()
    for list in "${sourceparts%/}"/*.sources "$sourcelist" "${sourceparts%/}"/*.list; do
        [[ -r "$list" && "${list##*/}" != "$source_list_name" ]] && lists+=("$list")
    done
    ((${#lists[@]})) || return 0
    awk -v codename="$codename" -v suite="$source_suite" '
        function has(words, word) { return (" " words " ") ~ ("[ \t]" word "[ \t]") }
        function fits(suites) { return has(suites, codename) || has(suites, "stable") || has(suites, "oldstable") }
        function found(uri, key) {
            if (done || uri ~ /^cdrom:/) return
            print "Types: deb-src\nURIs: " uri "\nSuites: " suite "\nComponents: main"
            if (key != "") print "Signed-By:" (key ~ /^\n/ ? "" : " ") key
            done = 1
        }
        function end_of_paragraph(    uris) {
            if (has(field["types"], "deb") && tolower(field["enabled"]) !~ /no|false/ &&
                fits(field["suites"]) && has(field["components"], "main")) {
                split(field["uris"], uris, /[ \t\n]+/)
                found(uris[1], field["signed-by"])
            }
            split("", field); name = ""
        }
        FNR == 1 { end_of_paragraph() }
        /^#/ { next }
        FILENAME ~ /\.sources$/ {
            if ($0 ~ /^[ \t]*$/) end_of_paragraph()
            else if ($0 ~ /^[ \t]/) { if (name != "") field[name] = field[name] "\n" $0 }
            else if ((colon = index($0, ":")) > 0) {
                name = tolower(substr($0, 1, colon - 1))
                value = substr($0, colon + 1)
                gsub(/^[ \t]+|[ \t]+$/, "", value)
                field[name] = value
            }
            next
        }
        /^[ \t]*deb[ \t]/ {
            line = $0; sub(/#.*/, "", line); sub(/^[ \t]*deb[ \t]+/, "", line)
            key = ""
            if (line ~ /^\[/) {
                options = substr(line, 2, index(line, "]") - 2)
                line = substr(line, index(line, "]") + 1)
                if (match(options, /signed-by=[^ \t]+/)) key = substr(options, RSTART + 10, RLENGTH - 10)
            }
            count = split(line, words, /[ \t]+/)
            first = words[1] == "" ? 2 : 1
            components = ""
            for (i = first + 2; i <= count; i++) components = components " " words[i]
            if (fits(words[first + 1]) && has(components, "main")) found(words[first], key)
        }
        END { end_of_paragraph() }' "${lists[@]}"
}

# Whether apt's lists know every source package in $1, the lines of missing_sources.
sources_are_listed() {
    local source
    while read -r _ source _; do
        apt-get source --print-uris "$source" </dev/null >/dev/null 2>&1 || return 1
    done <<<"$1"
}

as_root() {
    if ((EUID == 0)); then "$@"; else sudo "$@"; fi
}

# Installs the packages in $1 and, if $2 is not empty, adds it as a list of source packages. Needs root.
prepare_apt() {
    local wanted="$1" list="$2" list_file sourceparts=''
    eval "$(apt-config shell sourceparts Dir::Etc::sourceparts/d)"
    list_file="${sourceparts%/}/$source_list_name"
    if ((EUID != 0)) && ! command -v sudo >/dev/null; then
        {
            printf 'setup: the following needs root, and there is no sudo. Run it as root, then run this script again:\n\n'
            [[ -z "$list" ]] || printf "cat > '%s' <<'END'\n%s\nEND\n" "$list_file" "$list"
            printf 'apt-get update\n'
            [[ -z "$wanted" ]] || printf 'apt-get install -y --no-install-recommends %s\n' "$wanted"
        } >&2
        exit 1
    fi
    if [[ -n "$list" ]]; then
        say "enabling source packages in $list_file"
        printf '%s\n' "$list" | as_root tee "$list_file" >/dev/null ||
            fail "could not write $list_file as root; run this script as root"
    fi
    say "updating apt's lists"
    # A list that fails here need not be one of those we use, so what follows decides.
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq update ||
        say "apt-get update reported errors; going on with what it has"
    if [[ -n "$wanted" ]]; then
        say "installing $wanted"
        # shellcheck disable=SC2086 # one word per package
        as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq install -y --no-install-recommends $wanted ||
            fail "apt-get could not install: $wanted" \
                "If apt speaks of a failure to fetch or of a missing package, check the network connection and the" \
                "entries in apt's lists; if of a lock, wait for the other apt to end. Then run this script again."
    fi
}

# Leaves the checked archive in deps/archives.
fetch_archive() { # source-package archive sha256
    local source="$1" archive="$2" sum="$3" got
    if [[ ! -f "$archives/$archive" ]]; then
        say "fetching the source package $source"
        mkdir "$work/fetch"
        # Without its sandbox user apt can write below a folder that is ours alone.
        (cd "$work/fetch" && apt-get -qq -o APT::Sandbox::User=root source --download-only "$source" </dev/null) ||
            fail "could not fetch the source package $source." \
                "Check the network connection and run this script again; or put $archive," \
                "from any other place, into $archives."
        [[ -f "$work/fetch/$archive" ]] || fail "the source package $source brought no $archive"
        mkdir -p "$archives"
        mv "$work/fetch/$archive" "$archives/$archive"
        rm -rf "$work/fetch"
    fi
    got="$(sha256sum "$archives/$archive")"
    got="${got%% *}"
    if [[ "$got" != "$sum" ]]; then
        rm -f "$archives/$archive"
        fail "wrong SHA-256 of $archives/$archive: it is" \
            "    $got, expected" "    $sum" \
            "The file has been removed. Run this script again to fetch it anew; if that brings the same, the place it" \
            "comes from is damaged: choose another mirror in apt's lists."
    fi
}

unpack() { # name archive sha256 target strip members
    say "unpacking $2 to deps/$1"
    mkdir -p "$work/$1/$4"
    # shellcheck disable=SC2086 # one word per member
    tar -xzf "$archives/$2" -C "$work/$1/$4" --strip-components="$5" --no-same-owner $6 ||
        fail "could not unpack $archives/$2; is the disk full?"
    printf '%s\n' "$3" >"$work/$1/.sha256"
    # The folder appears under its name only when it is complete.
    rm -rf "${deps:?}/$1"
    mv -T "$work/$1" "$deps/$1"
}

main() {
    local todo wanted list='' fetch
    todo="$(missing_sources)"
    if ! is_debian; then
        unpack_given "$todo"
        return
    fi
    wanted="$(missing_packages | tr '\n' ' ')"
    wanted="${wanted% }"
    [[ -n "$todo$wanted" ]] || { say "all is there"; return; }

    fetch="$(without_archive "$todo")"
    if [[ -n "$fetch" ]] && ! sources_are_listed "$fetch"; then
        list="$(source_list)"
        [[ -n "$list" ]] || fail "apt's lists have no Debian entry with the component main to take source packages from." \
            "Add an entry of type deb-src for $source_suite and run this script again."
    fi
    [[ -z "$wanted$list" ]] || prepare_apt "$wanted" "$list"
    unpack_all "$todo"
    say "done"
}

without_archive() { # lines of missing_sources
    local line archive
    while read -r line; do
        read -r _ _ archive _ <<<"$line"
        [[ -z "$line" || -f "$archives/$archive" ]] || printf '%s\n' "$line"
    done <<<"$1"
}

unpack_all() { # lines of missing_sources
    local name source archive sum target strip members
    [[ -n "$1" ]] || return 0
    mkdir -p "$deps"
    # What a killed run left; a younger one may be at work.
    find "$deps" -maxdepth 1 -name '.work.*' -mmin +60 -exec rm -rf {} +
    work="$(mktemp -d "$deps/.work.XXXXXX")"
    trap 'rm -rf "$work"' EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM
    while read -r name source archive sum target strip members; do
        fetch_archive "$source" "$archive" "$sum"
        unpack "$name" "$archive" "$sum" "$target" "$strip" "$members"
    done <<<"$1"
}

# Not Debian: no packages to install, but archives that were put into deps/archives are checked and unpacked.
unpack_given() { # lines of missing_sources
    local wanted
    mapfile -t wanted < <(without_archive "$1" | awk '{ print "    " $3 "  (source package " $2 ")" }')
    if ((${#wanted[@]})); then
        fail "this is not a Debian system, so nothing can be installed from here. Install by your system's means:" \
            "    a C++20 compiler, CMake 3.25 or newer, Ninja, patch, RapidJSON, CLI11, GLU, GoogleTest, Google Benchmark," \
            "    FreeType, HarfBuzz, fontconfig, libzip, zlib, the DejaVu fonts and Xvfb (for tests)," \
            "    Qt 6.4 and giflib (or configure with -DJOSTLE_GUI=OFF)," \
            "    poly2tri (found by CMake if it is installed)," \
            "and the sources of Box2D 2.4.1, which is compiled here. Then either configure with" \
            "    cmake --preset release -DJOSTLE_BOX2D_SOURCE=DIR [-DJOSTLE_POLY2TRI_SOURCE=DIR]" \
            "or put these archives of Debian's source packages into $archives and run this script again:" \
            "${wanted[@]}"
    fi
    unpack_all "$1"
    say "the sources are in deps/; packages are up to you"
}

main
