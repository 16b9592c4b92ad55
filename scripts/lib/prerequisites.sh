# Installs what a script needs and the machine lacks. Sourced, not run.

# require <package> <command or path>...: notes the package as missing unless every command or path exists.
missing_packages=()
require() {
    local package=$1 thing
    shift
    for thing in "$@"; do
        if [[ $thing == /* ]]; then
            compgen -G "$thing" > /dev/null && continue
        else
            command -v "$thing" > /dev/null && continue
        fi
        missing_packages+=("$package")
        return
    done
}

# Installs the packages that `require` noted. Prints nothing when there are none.
install_missing() {
    ((${#missing_packages[@]})) || return 0
    local as_root=() log
    if ! command -v apt-get > /dev/null; then
        echo "These packages are missing and there is no apt-get to install them: ${missing_packages[*]}" >&2
        exit 1
    fi
    if ((EUID != 0)); then
        if ! command -v sudo > /dev/null || ! sudo -n true 2> /dev/null; then
            echo "These packages are missing; install them or run as root: ${missing_packages[*]}" >&2
            exit 1
        fi
        as_root=(sudo -n)
    fi
    echo "Installing ${missing_packages[*]}"
    log=$(mktemp)
    if ! { "${as_root[@]}" apt-get -qq update &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq install --no-install-recommends \
            "${missing_packages[@]}"; } > "$log" 2>&1 < /dev/null; then
        tail -n 20 "$log" >&2
        echo "Could not install: ${missing_packages[*]}" >&2
        rm -f "$log"
        exit 1
    fi
    rm -f "$log"
    missing_packages=()
}
