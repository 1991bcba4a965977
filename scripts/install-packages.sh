#!/usr/bin/env bash
# Installs the packages that the named purposes need and that are missing, on Debian and Ubuntu;
# on another system it names them.
#   scripts/install-packages.sh build         compiler, CMake, GSL, CLI11, libcsv
#   scripts/install-packages.sh build test    and GoogleTest, Google Benchmark
#   scripts/install-packages.sh build mpi     and Open MPI, for TESSEL-mpi
#   scripts/install-packages.sh build fuzz    and clang with its fuzzer runtime
#   scripts/install-packages.sh r             R with what the package in r/ and its tests use
#   scripts/install-packages.sh web           emscripten and npm, for the page in web/
#   scripts/install-packages.sh web-test      a browser for its tests
#   scripts/install-packages.sh lint          clang-format, clang-tidy
#   scripts/install-packages.sh guide         what builds the guide and checks its words
set -euo pipefail

# Debian keeps clang's fuzzer runtime in a package of its own; older Ubuntu installs it with clang
# and knows no such package.
has_fuzzer_runtime() {
  command -v clang++ >/dev/null 2>&1 &&
    echo 'extern "C" int LLVMFuzzerTestOneInput(const char*, unsigned long) { return 0; }' |
      clang++ -fsanitize=fuzzer,address -x c++ - -o /dev/null 2>/dev/null
}

packages=()
for purpose in "$@"; do
  case "$purpose" in
    build) packages+=(g++ make cmake libgsl-dev libcli11-dev libcsv-dev) ;;
    test) packages+=(libgtest-dev libbenchmark-dev) ;;
    mpi) packages+=(libopenmpi-dev openmpi-bin) ;;
    fuzz)
      packages+=(clang llvm)
      has_fuzzer_runtime || packages+=(libclang-rt-dev)
      ;;
    r)
      packages+=(r-base-core r-cran-ape r-cran-vegan r-cran-ade4 r-cran-tinytest r-cran-knitr
        r-cran-rmarkdown pandoc qpdf)
      ;;
    web)
      packages+=(emscripten dpkg-dev)
      # Node from elsewhere brings its npm, and excludes Debian's.
      command -v npm >/dev/null 2>&1 || packages+=(nodejs npm)
      ;;
    web-test) packages+=(chromium fonts-dejavu-core) ;;
    lint) packages+=(clang-format clang-tidy) ;;
    guide) packages+=(python3 pandoc weasyprint fonts-dejavu-core codespell) ;;
    *) echo "unknown purpose: $purpose" >&2; exit 2 ;;
  esac
done

if ! command -v apt-get >/dev/null 2>&1; then
  echo "This system has no apt-get. TESSEL needs, by their Debian names: ${packages[*]}" >&2
  echo "(a C++20 compiler, CMake 3.22 or later, the GNU Scientific Library, CLI11, libcsv;" >&2
  echo "for the tests GoogleTest and Google Benchmark). Going on with what is there." >&2
  exit 0
fi

installed() { [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }

missing=()
for package in "${packages[@]}"; do
  installed "$package" || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null 2>&1; then
    echo "Please install these packages as root: apt-get install ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi
"${as_root[@]}" apt-get update -qq
available=()
for package in "${missing[@]}"; do
  if [ "$package" = libclang-rt-dev ] && ! apt-cache show "$package" >/dev/null 2>&1; then continue; fi
  available+=("$package")
done
[ ${#available[@]} -eq 0 ] && exit 0
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${available[@]}"
