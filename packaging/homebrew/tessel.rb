# Untried on the project's machines, which have no Homebrew.
# scripts/release.sh puts the sum of the source in and writes dist/tessel.rb; the address is that of the
# release's files.
class Tessel < Formula
  desc "Character-based community analysis for ecologists"
  homepage "https://tessel.invalid/"
  url "https://tessel.invalid/releases/tessel-2.11.08-source.tar.gz"
  version "2.11.08"
  sha256 "0000000000000000000000000000000000000000000000000000000000000000"
  license "GPL-3.0-or-later"

  depends_on "cli11" => :build
  depends_on "cmake" => :build
  depends_on "gsl"
  depends_on "libcsv"

  on_macos do
    depends_on "libomp"
  end

  def install
    args = %W[-DTESSEL_TESTS=OFF -DTESSEL_BENCH=OFF -DCMAKE_INSTALL_DOCDIR=#{doc}]
    if OS.mac?
      libomp = Formula["libomp"]
      args += %W[
        -DOpenMP_CXX_FLAGS=-Xpreprocessor\ -fopenmp\ -I#{libomp.opt_include}
        -DOpenMP_CXX_LIB_NAMES=omp
        -DOpenMP_omp_LIBRARY=#{libomp.opt_lib}/libomp.dylib
      ]
    end
    system "cmake", "-S", ".", "-B", "build", *args, *std_cmake_args
    system "cmake", "--build", "build"
    system "cmake", "--install", "build"
  end

  test do
    cp_r Dir[doc/"examples/aravo/*"], testpath
    system bin/"TESSEL", "import", "--traits", "traits.csv", "--communities", "communities.csv",
           "--environment", "environment.csv", "--session", "alps"
    assert_match "TE     0.284662", shell_output("#{bin}/TESSEL analyse alps --iterations 100 --seed 1")
  end
end
