#include "TSLIFFMT/community_groups.h"

#include <cstdio>
#include <string>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/menus.h"
#include "TSLIF2/console.h"
#include "TSLIFFMT/selection.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/scoped.h"
#include "mxlibDim/standard_streams.h"
#include "mxlibDim/text.h"

namespace {

constexpr char kGroupLabelOptions[] =
    "\nLabels for groups: \n"
    "   1  given by default \n"
    "   2  specify new labels \n"
    "Type option no.: ";
constexpr char kPairLabelOptions[] =
    "\nLabels for new communities: \n"
    "   1  given by default \n"
    "   2  specify new labels \n"
    "Type option no.: ";
constexpr char kPairOrders[] =
    "\nOrder of the communities in the formda file: \n"
    "   1  all 2nd communities are after all 1st communities, in the same order \n"
    "   2  each 2nd community follows the corresponding 1st community \n"
    "Type option no.: ";
constexpr int kDefaultLabels = 1;

void AskForGroupLabels(int groups, char** labels) {
    if (ReadOption(kGroupLabelOptions, "1 2") == kDefaultLabels)
        return NumberGroups(groups, labels);
    std::fprintf(out, "\nEnter labels (max. %d alphanumeric characters):\n", kGroupLabelLength);
    ReadLongInput(groups, kGroupLabelLength, labels, "group labels");
}

void AskForGroupOfEach(int n, int groups, int* membership, const char* const* labels,
                       const char* word) {
    const ScopedMatrix<char> typed(n, kGroupLabelLength + 1);
    for (;;) {
        std::fprintf(out, "\nEnter group membership (label) for %s:\n%s:\t", word, word);
        for (int c = 0; c < n; c++) std::fprintf(out, "%s\t", reLabel[c]);
        std::fputc('\n', out);
        ReadLongInput(n, kGroupLabelLength, typed, "Groups");
        const Selection found = PositionsOf(n, typed, groups, labels);
        if (!found.empty()) {
            for (int c = 0; c < n; c++) membership[c] = found[static_cast<std::size_t>(c)] + 1;
            return;
        }
        std::fprintf(ErrorStream(), "\nError!! Enter again. \n");
    }
}

void AskForGroupSizes(int n, int groups, int* membership, const char* const* labels,
                      const char* word) {
    std::vector<int> sizes(static_cast<std::size_t>(groups));
    for (;;) {
        std::fprintf(out, "\nEnter number of %s per group:\nGroups:            ", word);
        for (int g = 0; g < groups; g++) std::fprintf(out, "%-3s ", labels[g]);
        std::fprintf(out, "\nNumber of %s: ", word);
        long long total = 0;
        for (int& size : sizes) total += size = ReadIntegerIn("%d\n", "-", 0.0, n);
        if (total == n) break;
        std::fputs("\nError!! Reenter!!\n", out);
        // Without groups there is nothing to type that could ever be right.
        if (groups == 0) RestForever();
    }
    for (int g = 0; g < groups; g++)
        for (int k = 0; k < sizes[static_cast<std::size_t>(g)]; k++) *membership++ = g + 1;
}

void AskForPairLabels(int groups, char** labels) {
    if (ReadOption(kPairLabelOptions, "1 2") == kDefaultLabels) return NumberGroups(groups, labels);
    do {
        std::fprintf(out, "\nEnter labels (max. %d alphanumeric characters):\n", kGroupLabelLength);
        for (int g = 0; g < groups; g++) std::fprintf(out, "%2d ", g + 1);
        std::fputc('\n', out);
        for (int g = 0; g < groups; g++) ReadStringIn("%4s ", labels[g], kGroupLabelLength);
    } while (!ReadYesNo("Are these correct? y/n "));
}

}  // namespace

void PrepareGroups() {
    whichPart = 0;
    grLabel = grLabelP[0];
    groupRel = groupRelP[0];
}

void NumberGroups(int n, char** labels) {
    for (int i = 0; i < n; i++)
        CopyText(labels[i], kGroupLabelLength, std::to_string(i + 1).c_str());
}

void SettingAnyGroups(int n, int* groups, int* membership, char** labels, const char* word) {
    Menu("SET GROUP PARTITION");
    std::fprintf(out, "Specify the number of groups of %s: ", word);
    *groups = ReadIntegerIn("%d\n", "-", 0.0, n);
    AskForGroupLabels(*groups, labels);
    std::fprintf(out, "Are the %s ordered by groups? y/n ", word);
    if (ReadCharIn("y n") == 'y')
        AskForGroupSizes(n, *groups, membership, labels, word);
    else
        AskForGroupOfEach(n, *groups, membership, labels, word);
}

void SettingNewReleves(int n, int* groups, int* membership, char** labels) {
    constexpr int kSecondsBehindFirsts = 1;
    *groups = n / 2;
    AskForPairLabels(*groups, labels);
    const bool secondsBehindFirsts = ReadOption(kPairOrders, "1 2") == kSecondsBehindFirsts;
    for (int c = 0; c < n; c++)
        if (secondsBehindFirsts)
            membership[c] = c < *groups ? c + 1 : c - *groups + 1;
        else
            membership[c] = c - c % 2 + 1;
}
