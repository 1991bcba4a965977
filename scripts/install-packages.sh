#!/bin/sh
# Installs the packages that the named purposes need and that are missing, on Debian and Ubuntu;
# on another system it names them.
#   scripts/install-packages.sh build         compiler, CMake, GSL, CLI11, libcsv
#   scripts/install-packages.sh build test    and GoogleTest, Google Benchmark
#   scripts/install-packages.sh build mpi     and Open MPI, for TESSEL-mpi
#   scripts/install-packages.sh build fuzz    and clang with its fuzzer runtime
#   scripts/install-packages.sh r             R with what the package in r/ and its tests use
#   scripts/install-packages.sh web           emscripten and npm, for the page in web/
#   scripts/install-packages.sh web-test      a browser for its tests
#   scripts/install-packages.sh windows       mingw-w64, for scripts/cross-build.sh, and wine
#   scripts/install-packages.sh aarch64       the same for 64-bit ARM, and qemu
#   scripts/install-packages.sh compilers     those of Debian 12, for scripts/check-machines.sh
#   scripts/install-packages.sh lint          clang-format, clang-tidy, shellcheck
#   scripts/install-packages.sh release       what makes packages and judges them
#   scripts/install-packages.sh release-check bare systems to try them on, and Wine
#   scripts/install-packages.sh guide         what builds the guide and checks its words
set -eu

# Debian keeps clang's fuzzer runtime in a package of its own; older Ubuntu installs it with clang
# and knows no such package.
has_fuzzer_runtime() {
  command -v clang++ >/dev/null 2>&1 &&
    echo 'extern "C" int LLVMFuzzerTestOneInput(const char*, unsigned long) { return 0; }' |
      clang++ -fsanitize=fuzzer,address -x c++ - -o /dev/null 2>/dev/null
}

packages=
for purpose in "$@"; do
  case "$purpose" in
    build) more="g++ make cmake libgsl-dev libcli11-dev libcsv-dev" ;;
    test) more="libgtest-dev libbenchmark-dev" ;;
    mpi) more="libopenmpi-dev openmpi-bin" ;;
    fuzz)
      more="clang llvm"
      has_fuzzer_runtime || more="$more libclang-rt-dev"
      ;;
    r)
      more="r-base-core r-cran-ape r-cran-vegan r-cran-ade4 r-cran-tinytest r-cran-knitr
        r-cran-rmarkdown pandoc qpdf"
      ;;
    web)
      more="emscripten dpkg-dev"
      # Node from elsewhere brings its npm, and excludes Debian's.
      command -v npm >/dev/null 2>&1 || more="$more nodejs npm"
      ;;
    web-test) more="chromium fonts-dejavu-core" ;;
    windows) more="g++-mingw-w64-x86-64-posix wine64 dpkg-dev" ;;
    aarch64) more="g++-aarch64-linux-gnu qemu-user-static dpkg-dev" ;;
    compilers)
      more="g++-11 g++-12 clang-14 clang-15 clang-16 clang-19 libc++-14-dev libc++abi-14-dev
        g++-11-aarch64-linux-gnu debootstrap dpkg-dev"
      ;;
    lint) more="clang-format clang-tidy shellcheck" ;;
    release) more="git dpkg-dev lintian" ;;
    release-check) more="debootstrap perl unzip wine64" ;;
    guide) more="python3 pandoc weasyprint fonts-dejavu-core codespell" ;;
    *) echo "unknown purpose: $purpose" >&2; exit 2 ;;
  esac
  packages="$packages $more"
done

# The command that installs the build's parts by another system's names, and those of the tests.
name_elsewhere() {
  if command -v brew >/dev/null 2>&1; then
    build="brew install cmake gsl cli11 libcsv libomp"
    tests="googletest google-benchmark"
  elif command -v dnf >/dev/null 2>&1; then
    build="dnf install gcc-c++ make cmake gsl-devel cli11-devel libcsv-devel"
    tests="gtest-devel google-benchmark-devel"
  elif command -v pacman >/dev/null 2>&1; then
    build="pacman -S gcc make cmake gsl cli11 (and libcsv, from its source if need be)"
    tests="gtest benchmark"
  else
    return 0
  fi
  echo "Here probably: $build; for the tests also $tests."
}

if ! command -v apt-get >/dev/null 2>&1; then
  {
    echo "This system has no apt-get, so that these have to be installed by hand: a C++20 compiler"
    echo "(GCC 11, Clang 14 or later), CMake 3.22 or later, the GNU Scientific Library, CLI11, libcsv;"
    echo "for the tests GoogleTest and Google Benchmark. Their Debian names:"
    echo "  $packages"
    name_elsewhere
    echo "Going on with what is there."
  } >&2
  exit 0
fi

installed() { [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }

missing=
for package in $packages; do
  installed "$package" || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

echo "Installing:$missing"
as_root=
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null 2>&1; then
    echo "Please install these packages as root: apt-get install$missing" >&2
    exit 1
  fi
  as_root=sudo
fi
$as_root apt-get update -qq
available=
for package in $missing; do
  if [ "$package" = libclang-rt-dev ] && ! apt-cache show "$package" >/dev/null 2>&1; then continue; fi
  available="$available $package"
done
[ -n "$available" ] || exit 0
# shellcheck disable=SC2086 # names of packages, one word each
$as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $available
