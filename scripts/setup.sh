# Sourced by ./run and ./test: makes sure that what the build needs is installed.
#
# Installs with apt-get where it may; otherwise prints the one command to run and ends.

setup_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  local sudo=""
  if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
      sudo="sudo"
    else
      echo "Missing packages. Run this once, then start again:" >&2
      echo "  sudo apt-get install ${missing[*]}" >&2
      return 1
    fi
  fi
  echo "Installing: ${missing[*]}" >&2
  $sudo apt-get update -qq >&2 || true
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >&2
}

build_packages="g++ cmake ninja-build pkg-config libassimp-dev libmeshoptimizer-dev libcli11-dev
  libpng-dev libstb-dev libglu1-mesa-dev libsdl2-dev libsdl2-ttf-dev fonts-dejavu-core
  assimp-testmodels"
test_packages="libgtest-dev libbenchmark-dev binutils parallel libx11-dev xvfb xdotool python3
  clang-format"
