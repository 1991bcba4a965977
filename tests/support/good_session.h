#pragma once
/// \file
/// A whole session without a fault: raw entry of everything, the functional analysis, the way out.
/// Tests put one fault into it, or cut it short.

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/temp_folder.h"

struct Step {
    std::string prompt;  ///< what is asked, in a word or two
    std::string answer;
};

using FilesByName = std::map<std::string, std::string>;

/// Raw files of five OTUs, three traits, four communities and two ecological variables, and the
/// files of an earlier session `old`, which the session `new` must not touch.
inline FilesByName GoodFiles() {
    return {
        {"B.txt", "2.385 1 2\n1.175 0 1\n3.81 1 3\n0.62 0 3\n1.905 1 1\nheight woody form\n"},
        {"W.txt", "3 0 4 0 1\n0 2 1 0 0\n1 1 0 2 0\n0 0 2 0 3\na b c d\n"},
        {"E.txt", "1.5 2\n2.25 1\n0.75 3\n3.1 1.5\nwater light\n"},
        {"F.txt", "0 2 4 4 4\n2 0 4 4 4\n4 4 0 3 3\n4 4 3 0 1\n4 4 3 1 0\n"},
        {"spp.txt", "Poa annua\nPoa pratensis\nStipa\nStipa\nCarex nigra\n"},
        {"types.txt", "1 1 2 2 2\n"},
        {"oldTrk.txt", "oldFormda.txt\n07Jul17\n"},
        {"oldFormda.txt",
         "T\n2\na b\n3 3\n0 0\n3 3\n3\np q r\n3\n0 0 0\n0 0 0 0 0 0 0\n25Jun2016\n1 2\n3 4\n5 7\n\n"
         "1 0 2\n0 3 1\n2 2 0\n\n1\n97Sep08\n1\n3\nv\nE.txt\n1.5 2.25 0.75\n0\nSMW 1\n0\n0\n"},
        {"oldPrinda.txt", "an earlier report\n"},
    };
}

inline std::vector<Step> GoodSession() {
    std::istringstream session(
        "main menu: N; session name: new; data option: 1; file B: B.txt; F 0/1: 1; "
        "file F: F.txt; file W: W.txt; species 0/1: 1; species file: spp.txt; E 0/1: 1; "
        "file E: E.txt; OTUs: 5; traits: 3; trait labels: 2; format of B: 2; "
        "source of types: k; trait types: 3 1 2; types correct: y; trait groups: 0; "
        "format of F: 1; communities: 4; community labels: 2; format of W: 1; "
        "species labels: 2; variables: 2; variable labels: 2; kind of E: 2; order of E: N; "
        "session menu: V; community menu: H; species as types: n; source of groups: f; "
        "group file: types.txt; fuzzy: 1; iterations: 9; restriction: 1; "
        "source of nesting: k; nesting: 1 1 2 2 2; seed option: 2; seed: 7; congruence: 1; "
        "resemblance: 10; trait option: 2; select traits: 1 1 1; standardize: y; "
        "details: y; community menu again: C; session menu again: C; main menu again: X;");
    std::vector<Step> steps;
    Step step;
    while (std::getline(session >> std::ws, step.prompt, ':') &&
           std::getline(session >> std::ws, step.answer, ';'))
        steps.push_back(step);
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
    for (const auto& [name, content] : files) folder.Write(name, content);
}
