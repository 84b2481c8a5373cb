# Sourced by the scripts: brings in Debian and Ubuntu packages, when they are missing and when it may.

packages_build=(g++ make cmake pkg-config libimgui-dev)
packages_demo=(libglfw3-dev libgl-dev nlohmann-json3-dev libcli11-dev)
packages_tools=(libcli11-dev nlohmann-json3-dev)
packages_prometheus=(prometheus-cpp-dev)
packages_test=(ninja-build libgtest-dev libgmock-dev locales "${packages_prometheus[@]}")
packages_bench=(libbenchmark-dev)
packages_lint=(clang-format-14 clang-tidy-14)
packages_windows=(dpkg-dev g++-mingw-w64-x86-64-posix wine wine64)
packages_server=(prometheus) # what the tests with servers start
packages_display=(xvfb libgl1-mesa-dri xdotool xclip imagemagick) # a display of its own, a mouse, a camera

is_installed() { [[ $(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]; }

is_available() { [[ -n $(apt-cache search --names-only "^$1\$" 2>/dev/null) ]]; }

# require_packages <package>...: returns when all are installed, ends the script when that can't be.
require_packages() {
    local missing=() package as_root=()
    if ! command -v dpkg-query >/dev/null; then
        echo "This isn't Debian or Ubuntu; going on as if the counterparts of these were there: $*" >&2
        return
    fi
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    ((${#missing[@]})) || return 0

    if ((EUID != 0)); then
        as_root=(sudo -n)
        if ! sudo -n true 2>/dev/null; then
            printf 'Packages are missing. Please run:\n    sudo apt-get update && sudo apt-get install %s\n' "${missing[*]}" >&2
            exit 1
        fi
    fi
    echo "Installing ${missing[*]}" >&2
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq)
    if ! { "${apt[@]}" update && "${apt[@]}" install -y --no-install-recommends "${missing[@]}"; } >&2; then
        printf 'apt failed. By hand:\n    sudo apt-get update && sudo apt-get install %s\n' "${missing[*]}" >&2
        exit 1
    fi
}
