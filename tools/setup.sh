# What the two commands share: the packages that they need, the build, and a virtual display.
# Sourced by ./play and ./check in the checkout's root.

# By their Debian names. The server and its build; the game and its build; what looks at it on a virtual display; what its tests are made with.
ServerPackages=(cmake ninja-build g++ pkg-config zlib1g-dev libenet-dev libdsfmt-dev)
GamePackages=("${ServerPackages[@]}" ccache libpng-dev libglfw3-dev libglew-dev libglu1-mesa-dev libgl-dev libgl1-mesa-dri
  libfreetype-dev libopenal-dev libalure-dev libcairo2-dev libvorbis-dev)
ScreenPackages=(xvfb xdotool imagemagick python3)
TestPackages=(libgtest-dev libbenchmark-dev iproute2)

# The same needs on a system without apt: programs to find, and modules that pkg-config must know.
GamePrograms=(cmake ninja c++ pkg-config)
ServerModules=(zlib libenet)
GameModules=(zlib libpng glfw3 glew glu freetype2 openal alure libenet cairo vorbisenc)
ScreenPrograms=(Xvfb xdotool import python3)

Say() { printf '%s\n' "$*" >&2; }
Fail() { Say "$@"; exit 1; }

Missing() {  # PACKAGE...: prints those that are not installed
  local package
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || printf '%s\n' "$package"
  done
}

HaveWithoutApt() {  # true when all programs and modules are there all the same
  local program
  for program in "${GamePrograms[@]}" "${ScreenPrograms[@]}"; do
    command -v "$program" >/dev/null || return 1
  done
  pkg-config --exists "${GameModules[@]}"
}

InstallMissing() {  # PACKAGE...: returns with all of them installed, or ends the script
  local missing root=()
  if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    HaveWithoutApt && return
    Fail "This system has no apt. Please install what these Debian packages stand for, and start again:" "$*"
  fi
  mapfile -t missing < <(Missing "$@")
  [ ${#missing[@]} -gt 0 ] || return 0
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null ||
      Fail "These packages are missing, and only root may install them: apt-get install ${missing[*]}"
    root=(sudo)
  fi
  Say "Installing: ${missing[*]}"
  "${root[@]}" apt-get update -qq >&2 || Say "apt-get update failed; trying with the lists that are there."
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2 ||
    Fail "apt could not install: ${missing[*]}"
}

Configure() {  # PRESET [CMAKE ARGUMENT...]: makes build/PRESET, from nothing where the checkout was moved since
  local folder=build/$1 fresh=()
  if [ -f "$folder/CMakeCache.txt" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$folder/CMakeCache.txt"; then
    fresh=(--fresh)
  fi
  cmake "${fresh[@]}" --preset "$@" >&2
}

StartDisplay() {  # exports DISPLAY, a virtual screen of its own that ends with the script
  local number
  exec {displayPipe}< <(exec Xvfb -displayfd 1 -screen 0 1024x768x24 -nolisten tcp 2>/dev/null)
  displayProcess=$!
  trap 'kill "$displayProcess" 2>/dev/null || true' EXIT
  read -r -t 20 number <&"$displayPipe" || Fail "No virtual display could be started."
  export DISPLAY=:$number
}
