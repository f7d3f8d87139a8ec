# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT
# shellcheck shell=bash

# Sourced by the scripts that build, run and test: which Debian packages each of
# those needs, and one function that installs what is missing.

# shellcheck disable=SC2034 # used by the scripts that source this file
build_packages=(
    cmake g++ ninja-build
    qtbase5-dev qtbase5-dev-tools
    qttranslations5-l10n    # Chinese texts of Qt's own file dialog
)

# What a virtual desktop is made of, and the person in front of it.
# shellcheck disable=SC2034
virtual_desktop_packages=(
    at-spi2-core dbus-daemon # what a screen reader reads from
    fonts-noto-cjk          # the interface is in Chinese
    fonts-wqy-microhei      # the other font that many have
    libnss-wrapper          # a home folder that is not the caller's
    openbox wmctrl          # a window manager, and asking it to close a window
    pcmanfm                 # a file manager to drag from
    qtwayland5 weston       # the other kind of desktop
    x11-utils               # xprop
    xauth xclip xdotool xvfb
    xserver-xephyr          # two monitors
)

# File systems in images, in which the tests look for old bytes.
# shellcheck disable=SC2034
medium_packages=(
    e2fsprogs mount xfsprogs
)

# shellcheck disable=SC2034
check_packages=(
    appstream               # appstreamcli
    binutils                # looking into the finished executable
    clang-format clang-tidy clazy
    codespell
    desktop-file-utils
    groff-base man-db       # reading the manual pages as users will
    devscripts              # hardening-check
    librsvg2-bin            # drawing the artwork again, to compare
    python3                 # drawing the artwork again is written in it
    reuse
    shellcheck
)

# shellcheck disable=SC2034
packaging_packages=(
    binutils                # looking into the packaged executable
    debhelper dpkg-dev
)

# shellcheck disable=SC2034
package_check_packages=(
    debootstrap             # a fresh Debian to try the package in
    devscripts              # hardening-check
    lintian
    "${virtual_desktop_packages[@]}"
)

# shellcheck disable=SC2034
fuzz_packages=(
    clang libclang-rt-14-dev
)

# install_missing PACKAGE...: without a missing package this asks nobody
# anything and needs no network.
install_missing() {
    local package
    local -a missing=() as_root=()
    for package in "$@"; do
        if ! dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null \
            | grep --quiet --line-regexp installed; then
            missing+=("$package")
        fi
    done
    if [[ ${#missing[@]} -eq 0 ]]; then
        return
    fi
    if [[ $EUID -ne 0 ]]; then
        as_root=(sudo)
    fi
    echo "installing: ${missing[*]}"
    "${as_root[@]}" apt-get update --quiet
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install --quiet --yes --no-install-recommends "${missing[@]}"
}
