#pragma once
/// \file
/// Files of tests/data that stand part by part, each under a heading "== VERB NAME".

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

struct Part {
    std::string verb, name, text;
};

inline std::vector<Part> PartsOf(const std::string& path) {
    std::vector<Part> parts;
    std::ifstream lines(path);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("== ")) {
            std::istringstream heading(line.substr(3));
            heading >> parts.emplace_back().verb >> std::ws;
            std::getline(heading, parts.back().name);
        } else if (!parts.empty()) {
            parts.back().text += line + "\n";
        }
    }
    return parts;
}
