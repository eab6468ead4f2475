# Sourced by ../../dev: what every word shares. Shows commands before it runs them and installs missing packages.
# shellcheck shell=bash

# Says a command in a form that can be pasted into a shell.
announce() {
    printf '+' >&2
    printf ' %q' "$@" >&2
    printf '\n' >&2
}

# Runs a command and says so first.
show() {
    announce "$@"
    "$@"
}

# Configures and builds a preset and runs its tests: the steps of its workflow, one by one, because a workflow says that all
# went well where a signal ended a step.
run_workflow() {
    show cmake --preset "$1"
    show cmake --build --preset "$1"
    show ctest --preset "$1"
}

# Prints those of the packages that are not installed, one to a line; all of them where there is no dpkg to ask.
missing_packages() {
    local lPackage
    for lPackage in "$@"; do
        if [[ "$(dpkg-query --show --showformat='${Status}' "$lPackage" 2>/dev/null)" != "install ok installed" ]]; then
            echo "$lPackage"
        fi
    done
}

# Prints how this user becomes root: nothing for root itself, "sudo" where that may work. Fails where neither is so.
# Without a terminal sudo can't ask for a password, so only a password-less one helps.
root_prefix() {
    if [[ $EUID -eq 0 ]]; then
        return 0
    fi
    if command -v sudo >/dev/null && { sudo -n true 2>/dev/null || [[ -t 0 ]]; }; then
        echo sudo
        return 0
    fi
    return 1
}

# Whether apt has heard of every one of the packages; on a fresh machine its lists are empty.
apt_knows() {
    local lPackage
    for lPackage in "$@"; do
        apt-cache show --no-all-versions "$lPackage" >/dev/null 2>&1 || return 1
    done
}

# Says which one command installs the packages, for somebody who may run it, and ends the script.
ask_for_packages() {
    local lCommand="apt-get install -y --no-install-recommends $*"
    apt_knows "$@" || lCommand="apt-get update && $lCommand"
    {
        echo "./dev: these Debian packages are missing: $*"
        echo "./dev: run this as root and try again:"
        echo "  $lCommand"
    } >&2
    exit 2
}

# apt-get as root, without questions. With sudo as its first argument it goes through that.
apt_get() {
    local lSudo=$1
    shift
    show ${lSudo:+"$lSudo"} env DEBIAN_FRONTEND=noninteractive apt-get "$@"
}

# Installs what is missing of the packages, or names the command and exits with status 2.
require_packages() {
    local -a lMissing
    mapfile -t lMissing < <(missing_packages "$@")
    if [[ ${#lMissing[@]} -eq 0 ]]; then
        return 0
    fi
    local lSudo
    if ! command -v apt-get >/dev/null || ! lSudo=$(root_prefix); then
        ask_for_packages "${lMissing[@]}"
    fi
    if ! apt_knows "${lMissing[@]}"; then
        apt_get "$lSudo" update || ask_for_packages "${lMissing[@]}"
    fi
    if ! apt_get "$lSudo" install -y --no-install-recommends "${lMissing[@]}"; then
        # Lists older than the mirror name files that are gone; fresh ones settle that.
        apt_get "$lSudo" update || ask_for_packages "${lMissing[@]}"
        apt_get "$lSudo" install -y --no-install-recommends "${lMissing[@]}" || ask_for_packages "${lMissing[@]}"
    fi
}
