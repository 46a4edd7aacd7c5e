# What this project needs of Debian 12, in one list for run.sh and test.sh, and the way it gets installed. To be sourced.

kx_build_packages=(
    cmake g++ ninja-build ccache lld
    qtbase5-dev qt3d5-dev qtdeclarative5-dev qtquickcontrols2-5-dev libgdal-dev
    qtlocation5-dev qtpositioning5-dev
    qttools5-dev qttools5-dev-tools
)

kx_run_packages=(
    libqt5sql5-sqlite libqt5svg5 qt5-image-formats-plugins libgl1-mesa-dri fonts-dejavu-core poppler-utils qt3d-defaultgeometryloader-plugin
    qml-module-qt3d qml-module-qtquick-scene3d qml-module-qtquick2 qml-module-qtquick-window2
    qml-module-qtquick-controls2 qml-module-qtquick-templates2 qml-module-qtquick-layouts qml-module-qtquick-dialogs
    qml-module-qtquick-controls qml-module-qtgraphicaleffects qml-module-qtquick-shapes qml-module-qt-labs-settings
    qml-module-qt-labs-folderlistmodel qml-module-qtlocation qml-module-qtpositioning
    qml-module-qt-labs-platform
)

# For a machine without a screen, and for the tests.
kx_headless_packages=(xvfb xauth)
kx_test_packages=(qml-module-qttest sqlite3)
# For scripts/fuzz.sh, which leaves it where they are not there.
kx_fuzz_packages=(clang libclang-rt-14-dev)

kx_is_installed() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Installs those of the named packages that are missing, and says so. Does nothing where nothing is missing.
kx_install_missing() {
    local package missing=() as_root=()
    command -v dpkg-query >/dev/null || {
        echo "This is not a Debian system; make sure that these are there: $*" >&2
        return 0
    }
    for package in "$@"; do
        kx_is_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "Missing packages, and no right to install them: ${missing[*]}" >&2
            return 1
        }
        as_root=(sudo)
    fi
    echo "Installing with apt-get: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq || return
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" >/dev/null
}
