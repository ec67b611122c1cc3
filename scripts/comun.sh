# What the scripts share; sourced by them, from the project's root.
# shellcheck shell=bash

decir() { printf '\n== %s\n' "$*"; }

# Runs a command as root, directly or through sudo.
como_raiz() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "Root is needed to run: $*" >&2
        return 1
    fi
}

# Installs the Debian packages that are missing; says which.
necesitar() {
    local faltan=() paquete
    for paquete in "$@"; do
        dpkg-query -W -f='${Status}' "$paquete" 2>/dev/null | grep -q 'ok installed' ||
            faltan+=("$paquete")
    done
    [ ${#faltan[@]} -eq 0 ] && return 0
    decir "Installing: ${faltan[*]}"
    como_raiz apt-get update -q
    como_raiz env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -q --no-install-recommends "${faltan[@]}"
}

# What building the program takes, and what showing it on a virtual display takes.
PAQUETES_PROGRAMA=(g++ cmake ninja-build libasio-dev qt6-base-dev)
PAQUETES_PANTALLA=(xvfb imagemagick fonts-dejavu-core)
# The Windows build and its installer.
PAQUETES_WINDOWS=(g++-mingw-w64-x86-64-posix nsis zip)
# Who reads a workbook back: one is enough to show it, all of them judge it.
PAQUETES_LECTORES=(python3 python3-xlrd)
PAQUETES_OTROS_LECTORES=(libapache-poi-java libcommons-collections4-java libcommons-codec-java
    libcommons-math3-java libcommons-compress-java default-jdk-headless libreoffice-calc-nogui
    python3-uno)

# What has been started in the background; acabar_procesos ends it, the last one first.
procesos=()
acabar_procesos() {
    for ((i = ${#procesos[@]} - 1; i >= 0; i--)); do
        kill "${procesos[i]}" 2>/dev/null || true
        wait "${procesos[i]}" 2>/dev/null || true
    done
}

# Waits, silently, for a command to succeed, at most so many seconds.
esperar() {
    local segundos=$1
    shift
    for ((i = 0; i < segundos * 10; i++)); do
        "$@" >/dev/null 2>&1 && return 0
        sleep 0.1
    done
    echo "Not seen in $segundos seconds: $*" >&2
    return 1
}

# A virtual display in DISPLAY. It tells its number, and leaves it, in the file given.
pantalla_virtual() {
    local numero=$1 medidas=$2
    Xvfb -displayfd 3 -screen 0 "$medidas" -nolisten tcp -noreset 3>"$numero" 2>/dev/null &
    procesos+=($!)
    esperar 20 test -s "$numero"
    DISPLAY=":$(cat "$numero")"
    export DISPLAY
}

# A window manager on it.
gestor_de_ventanas() {
    openbox >/dev/null 2>&1 &
    procesos+=($!)
    esperar 20 xprop -root _NET_SUPPORTING_WM_CHECK
}

# Whether a build folder is configured, and with the Qt for Windows of now if it uses one at all.
configurada() {
    local carpeta=$1 qt
    [ -e "$carpeta/build.ninja" ] && [ -e "$carpeta/CMakeCache.txt" ] || return 1
    qt=$(grep '^BN_QT_WINDOWS:' "$carpeta/CMakeCache.txt") || return 0
    [ "${qt#*=}" = "${BN_QT_WINDOWS:-}" ]
}

# Configures a preset, once while nothing changes, and builds the targets given (all without).
construir() {
    local preset=$1 carpeta=$2
    shift 2
    decir "Building $carpeta (${*:-everything})"
    if ! configurada "$carpeta"; then
        rm -f "$carpeta/build.ninja" # or one that fails half-way would count as done
        cmake --preset "$preset" --fresh
    fi
    cmake --build "$carpeta" ${1:+--target "$@"}
}
