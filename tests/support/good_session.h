#pragma once
/// \file
/// A whole session without a fault: raw entry of everything, both analyses, the way out.
/// Tests put one fault into it, or cut it short.

#include <map>

#include "support/parts.h"
#include "support/temp_folder.h"

struct Step {
    std::string prompt;    ///< what is asked, in a word or two
    std::string accepted;  ///< the list that a complaint names: letters, numbers or a range
    std::string answer;
};

using FilesByName = std::map<std::string, std::string>;

/// The files of the user, those of an earlier session `old` too, which the session `new` must not
/// touch.
inline FilesByName GoodFiles() {
    FilesByName files;
    for (const Part& part : PartsOf(TESSEL_TEST_DATA "/good_session.txt"))
        if (part.verb == "file") files[part.name] = part.text;
    return files;
}

inline std::vector<Step> GoodSession() {
    std::istringstream lines(PartsOf(TESSEL_TEST_DATA "/good_session.txt").back().text);
    std::vector<Step> steps;
    for (Step step; std::getline(lines, step.prompt, '[') &&
                    std::getline(lines, step.accepted, ']') && lines.ignore(2) &&
                    std::getline(lines, step.answer);) {
        step.prompt.pop_back();
        steps.push_back(step);
    }
    return steps;
}

/// The first `steps` answers, one per line.
inline std::string Answers(const std::vector<Step>& session,
                           std::size_t steps = std::string::npos) {
    std::string text;
    for (std::size_t i = 0; i < session.size() && i < steps; i++) text += session[i].answer + "\n";
    return text;
}

inline void WriteFiles(const TempFolder& folder, const FilesByName& files) {
    for (const auto& [name, content] : files) {
        std::filesystem::create_directories((folder.path() / name).parent_path());
        folder.Write(name, content);
    }
}
