#!/usr/bin/env bash
# Builds the server as on a machine that has its packages and nothing else: no other module is known to pkg-config, no other package
# to CMake. Then looks at what it was made of: headers of what only the game needs may lie here.
#   check_server.sh CHECKOUT FOLDER
set -euo pipefail
root=$1 folder=$2
enet=$(pkg-config --variable=pcfiledir libenet)
rm -rf "$folder/modules" && mkdir -p "$folder/modules"
cp "$enet/libenet.pc" "$folder/modules/"
export PKG_CONFIG_LIBDIR=$folder/modules PKG_CONFIG_PATH=
! pkg-config --exists glfw3 || { echo "glfw3 is still known: this test would show nothing"; exit 1; }

hidden=()
for package in PNG GTest benchmark OpenGL OpenAL Freetype GLEW; do hidden+=("-DCMAKE_DISABLE_FIND_PACKAGE_$package=ON"); done
cd "$root"
cmake --preset server -B "$folder" "${hidden[@]}"
ninja -j2 -C "$folder" tarnvale-server

foreign=$(ninja -C "$folder" -t deps | grep -oE '/usr/(local/)?include/(GL|GLFW|AL|freetype2|cairo|vorbis|ogg|gtest|benchmark|X11|png|libpng)[^ ]*' | sort -u || true)
[ -z "$foreign" ] || { echo "The server is made with what only the game needs:"; echo "$foreign"; exit 1; }
strange=$(ldd "$folder/src/server/tarnvale-server" | grep -vE 'linux-vdso|ld-linux|lib(enet|z|dSFMT-521|stdc\+\+|m|gcc_s|c|pthread)\.so' || true)
[ -z "$strange" ] || { echo "The server needs more than its packages bring:"; echo "$strange"; exit 1; }
"$folder/src/server/tarnvale-server" --version
