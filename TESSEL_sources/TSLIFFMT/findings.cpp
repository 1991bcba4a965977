#include "TSLIFFMT/findings.h"

#include "TSLGLOB/dataset.h"
#include "TSLIFFMT/checks.h"
#include "mxlibDim/text.h"

namespace {

using Texts = std::vector<std::string>;

Texts EmptyCommunities() {
    Texts empty;
    for (int c = 0; c < ncsm; c++)
        if (IsEmptyCommunity(c)) empty.emplace_back(reLabel[c]);
    return empty;
}

/// OTUs have no labels: their numbers, from 1.
Texts AbsentOTUs() {
    Texts absent;
    for (int i = 0; i < tcst; i++)
        if (OccursNowhere(i)) absent.push_back(std::to_string(i + 1));
    return absent;
}

/// "what: count of n: the first few"; nothing for none.
void Add(const char* what, int n, const Texts& found, Texts* findings) {
    constexpr std::size_t kNamed = 10;
    if (found.empty()) return;
    std::string line = what + (": " + std::to_string(found.size())) + " of " + std::to_string(n);
    for (std::size_t i = 0; i < found.size() && i < kNamed; i++)
        line += (i == 0 ? ": " : ", ") + found[i];
    findings->push_back(line + (found.size() > kNamed ? ", ..." : ""));
}

std::string Sizes() {
    std::string sizes = "Data set: " + std::to_string(tcst) + " OTUs, " + std::to_string(nch) +
                        " traits, " + std::to_string(ncsm) + " communities, " +
                        std::to_string(nenv) + " ecological variables";
    if (nSpp > 0) sizes += ", " + std::to_string(nSpp) + " species";
    return sizes + (hasPhylogeny != 0 ? ", with a phylogeny" : "");
}

}  // namespace

Texts LabelsThatAreNumbers(int n, const char* const* labels) {
    Texts numbers;
    bool areDefault = true;
    for (int i = 0; i < n; i++) {
        if (CountNumbers(labels[i]) > 0) numbers.emplace_back(labels[i]);
        areDefault = areDefault && labels[i] == std::to_string(i + 1);
    }
    return areDefault ? Texts() : numbers;
}

Texts FindingsOfDataSet() {
    Texts findings;
    Add("Labels of traits that are numbers", nch, LabelsThatAreNumbers(nch, chLabel), &findings);
    Add("Labels of communities that are numbers", ncsm, LabelsThatAreNumbers(ncsm, reLabel),
        &findings);
    if (nenv > 0)
        Add("Labels of ecological variables that are numbers", nenv,
            LabelsThatAreNumbers(nenv, envLabel), &findings);
    Add("Communities without individuals", ncsm, EmptyCommunities(), &findings);
    Add("OTUs that occur nowhere", tcst, AbsentOTUs(), &findings);
    findings.push_back(Sizes());
    return findings;
}
