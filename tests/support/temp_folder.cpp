#include "support/temp_folder.h"

#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

TempFolder::TempFolder() {
    // In memory where there is one: the program waits until a disk has its files.
    const bool hasMemory = access("/dev/shm", W_OK | X_OK) == 0;
    const fs::path parent = hasMemory ? fs::path("/dev/shm") : fs::temp_directory_path();
    std::string name = (parent / "tessel-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    fs::permissions(path_, fs::perms::owner_all, ignored);
    fs::remove_all(path_, ignored);
}

void TempFolder::Write(const std::string& name, const std::string& content) const {
    std::ofstream(path_ / name, std::ios::binary) << content;
}

std::string TempFolder::Read(const std::string& name) const {
    return ReadWholeFile(path_ / name);
}

bool TempFolder::Has(const std::string& name) const {
    return fs::exists(path_ / name);
}

std::string ReadWholeFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str();
}

WorkingIn::WorkingIn(const fs::path& folder) : before_(fs::current_path()) {
    fs::current_path(folder);
}

WorkingIn::~WorkingIn() {
    std::error_code ignored;
    fs::current_path(before_, ignored);
}
