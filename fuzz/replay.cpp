// Runs a fuzz target on files, without a fuzzer: the corpus as an ordinary test, a finding under
// the debugger.
//   replay_formda folder-or-file ...

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fs = std::filesystem;

int main(int argc, char** argv) {
    std::vector<fs::path> files;
    for (int i = 1; i < argc; i++) {
        const fs::path path = fs::absolute(argv[i]);
        if (!fs::is_directory(path))
            files.push_back(path);
        else
            for (const auto& entry : fs::directory_iterator(path)) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    // The target takes the standard streams for itself and its own folder for the working one.
    FILE* const screen = stdout;
    LLVMFuzzerInitialize(&argc, &argv);
    for (const fs::path& file : files) {
        std::fprintf(screen, "%s\n", file.c_str());
        std::fflush(screen);
        std::ifstream stream(file, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(stream), {});
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    return files.empty() ? 1 : 0;
}
