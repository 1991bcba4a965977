#include "mxlib/random_lists.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <vector>

namespace {

std::vector<int> Identity(int n) {
    std::vector<int> list(n);
    std::iota(list.begin(), list.end(), 1);
    return list;
}

/// The shuffle written out on a generator of its own.
void FisherYates(gsl_rng* generator, std::vector<int>* list) {
    const auto n = list->size();
    for (size_t i = 0; i + 1 < n; i++)
        std::swap((*list)[i], (*list)[i + gsl_rng_uniform_int(generator, n - i)]);
}

TEST(RandomLists, TheGeneratorIsTheMersenneTwister) {
    InitRndNumberGenerator(5489);
    EXPECT_EQ(gsl_rng_get(r), 3499211612u);
    EXPECT_EQ(gsl_rng_get(r), 581869302u);
    EXPECT_EQ(gsl_rng_get(r), 3890346734u);
    InitRndNumberGenerator(5489);
    EXPECT_EQ(gsl_rng_get(r), 3499211612u);
}

TEST(RandomLists, ShufflesFollowTheForwardWalk) {
    gsl_rng* own = gsl_rng_alloc(gsl_rng_mt19937);
    gsl_rng_set(own, 20240501);
    InitRndNumberGenerator(20240501);
    std::vector<int> list(50);
    std::vector<int> expected = Identity(50);
    RndList(50, list.data());
    FisherYates(own, &expected);
    EXPECT_EQ(list, expected);
    RndListSpecified(50, list.data());  // goes on from the list it finds
    FisherYates(own, &expected);
    EXPECT_EQ(list, expected);
    const unsigned long next = gsl_rng_get(own);
    RndList(1, list.data());
    RndList(0, nullptr);
    EXPECT_EQ(list[0], 1);
    EXPECT_EQ(gsl_rng_get(r), next) << "a list of one draws nothing";
    gsl_rng_free(own);
}

TEST(RandomLists, SelectedPlacesExchangeTheirIndicesAmongThemselves) {
    InitRndNumberGenerator(3);
    const bool mask[] = {false, true, true, false, true, true};
    bool moved = false;
    for (int draw = 0; draw < 20; draw++) {
        std::vector<int> list = {70, 0, 0, 90, 0, 0};
        RndListSelect(6, list.data(), mask);
        EXPECT_EQ(list[0], 70);
        EXPECT_EQ(list[3], 90);
        std::vector<int> chosen = {list[1], list[2], list[4], list[5]};
        moved |= chosen != std::vector<int>{2, 3, 5, 6};
        std::sort(chosen.begin(), chosen.end());
        EXPECT_EQ(chosen, (std::vector<int>{2, 3, 5, 6}));
    }
    EXPECT_TRUE(moved);
}

TEST(RandomLists, NestedListsStayWithinTheirGroups) {
    const int groups[] = {4, 1, 4, 0, 1, 4, 1, 9, 4, 1};
    // groups are shuffled in the order of their labels, each like a list of its own
    gsl_rng* own = gsl_rng_alloc(gsl_rng_mt19937);
    gsl_rng_set(own, 99);
    InitRndNumberGenerator(99);
    std::vector<int> expected = Identity(10);
    for (const std::vector<int>& members :
         {std::vector<int>{4}, {2, 5, 7, 10}, {1, 3, 6, 9}, {8}}) {
        std::vector<int> order = members;
        FisherYates(own, &order);
        for (size_t m = 0; m < members.size(); m++) expected[members[m] - 1] = order[m];
    }
    gsl_rng_free(own);
    std::vector<int> list(10);
    RndListNestedNew(10, groups, 1, list.data());
    EXPECT_EQ(list, expected);
}

TEST(SubsetWalk, SubsetsComeInLexicographicOrder) {
    const std::vector<std::vector<int>> expected = {{1, 2, 3, 4}, {1, 3, 2, 4}, {1, 4, 2, 3},
                                                    {2, 3, 1, 4}, {2, 4, 1, 3}, {3, 4, 1, 2}};
    std::vector<int> array(4);
    for (size_t i = 0; i < expected.size(); i++) {
        PermuteArray(4, 2, array.data(), i == 0);
        EXPECT_EQ(array, expected[i]);
    }
    std::vector<int> ended = array;
    PermuteArray(4, 2, array.data(), false);  // the walk is over
    EXPECT_EQ(array, ended);
    PermuteArray(4, 4, array.data(), true);
    EXPECT_EQ(array, Identity(4));
}

TEST(SubsetWalk, ANewWalkMayStartBeforeTheFormerEnded) {
    std::vector<int> array(200);
    PermuteArray(200, 100, array.data(), true);  // more subsets than 64 bits can count
    PermuteArray(200, 100, array.data(), false);
    EXPECT_EQ(array[99], 101);
    std::vector<std::vector<int>> seen;
    for (int i = 0; i < 462; i++) {  // C(11, 5)
        PermuteArray(11, 5, array.data(), i == 0);
        seen.emplace_back(array.begin(), array.begin() + 5);
    }
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
    EXPECT_TRUE(std::adjacent_find(seen.begin(), seen.end()) == seen.end());
    EXPECT_EQ(seen.back(), (std::vector<int>{7, 8, 9, 10, 11}));
}

}  // namespace
