#pragma once
/// \file
/// A whole session without a fault: raw entry of everything, both analyses, the way out.
/// Tests put one fault into it, or cut it short.

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/temp_folder.h"

struct Step {
    std::string prompt;    ///< what is asked, in a word or two
    std::string accepted;  ///< the list that a complaint names: letters, numbers or a range
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
        "main menu [N O S A X]: N; session name []: new; data option [1 2 3 4]: 1; "
        "file B []: B.txt; F 0/1 [0 1]: 1; file F []: F.txt; file W []: W.txt; "
        "species 0/1 [0 1]: 1; species file []: spp.txt; E 0/1 [0 1]: 1; file E []: E.txt; "
        "OTUs [1 to 2.14748e+09]: 5; traits [1 to 2.14748e+09]: 3; trait labels [1 2]: 2; "
        "format of B [1 2]: 2; source of types [f k]: k; trait types [1 2 3 4]: 3 1 2; "
        "types correct [y n]: y; trait groups [0 1]: 0; format of F [1 2 3]: 1; "
        "communities [1 to 2.14748e+09]: 4; community labels [1 2]: 2; format of W [1 2 3]: 1; "
        "species labels [1 2]: 2; variables [1 to 2.14748e+09]: 2; variable labels [1 2]: 2; "
        "kind of E [1 2 3 4 5]: 2; order of E [n t]: N; session menu [V S C]: V; "
        "community menu [H K C]: H; species as types [y n]: n; source of groups [f k]: f; "
        "group file []: types.txt; fuzzy [0 1]: 1; iterations [0 to 2.14748e+09]: 9; "
        "restriction [0 1]: 1; source of nesting [f k]: k; nesting []: 1 1 2 2 2; "
        "seed option [1 2]: 2; seed [0 to 4.29497e+09]: 7; congruence [1 2 3]: 1; "
        "resemblance [6 7 8 9 10]: 10; trait option [1 2]: 2; select traits [0 1]: 1 1 1; "
        "standardize [y n]: y; details [y n]: y; community menu again [H K C]: K; "
        "criterion [1 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24]: 12; "
        "species as types again [y n]: n; source of groups again [f k]: k; "
        "groups []: 1 1 2 2 3; fuzzy again [0 1]: 1; congruence again [1 2 3]: 1; "
        "resemblance again [6 7 8 9 10]: 6; trait option again [1 2]: 1; "
        "standardize again [y n]: n; smallest subset [1 to 3]: 1; largest subset [1 to 3]: 2; "
        "lines of subsets [y n]: y; community menu at last [H K C]: C; "
        "session menu again [V S C]: C; main menu again [N O S A X]: X;");
    std::vector<Step> steps;
    Step step;
    while (std::getline(session >> std::ws, step.prompt, '[') &&
           std::getline(session, step.accepted, ']') && session.ignore(2) &&
           std::getline(session, step.answer, ';')) {
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
