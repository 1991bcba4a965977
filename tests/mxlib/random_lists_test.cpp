#include "mxlib/random_lists.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "mxlib/subsets.h"
#include "mxlib/twister.h"

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

/// Whole blocks and every way to draw, against the library's own generator.
TEST(RandomLists, TheTwisterDrawsTheStreamOfTheLibrarysOwn) {
    gsl_rng* own = gsl_rng_alloc(gsl_rng_mt19937);
    gsl_rng* twister = gsl_rng_alloc(&kTwister);
    for (const unsigned long seed : {0UL, 1UL, 4294967295UL, 4294967296UL + 7}) {
        gsl_rng_set(own, seed);
        gsl_rng_set(twister, seed);
        for (unsigned n = 1; n < 3 * Twister::kSize; n++) {
            const unsigned most = n % 2 == 0 ? n : 4294967295U / n;
            ASSERT_EQ(DrawBelow(twister, most), gsl_rng_uniform_int(own, most));
            ASSERT_EQ(DrawUniform(twister), gsl_rng_uniform(own));
            ASSERT_EQ(gsl_rng_get(twister), gsl_rng_get(own));
            ASSERT_EQ(gsl_rng_uniform(twister), gsl_rng_uniform(own));
        }
    }
    gsl_rng_free(twister);
    gsl_rng_free(own);
}

/// The first numbers are those of Python's random.seed(seed + (number << 32)), which seeds by the
/// same key; so is the number in the third block.
TEST(RandomLists, AStreamOfASeedHasTheKeyOfBoth) {
    const struct {
        unsigned long seed;
        std::uint32_t number;
        std::vector<unsigned long> first;
    } rows[] = {{7, 1, {968553300, 3287823873, 1540179448}},
                {7, 2, {3024930075, 3803530016, 644625210}},
                {0, 1, {485306839, 1508871100, 1794561286}},
                {4357, 1, {1475314686, 2623037156, 3575815989}},
                {4294967295, 2147483647, {1359979423, 2819855560, 2711238091}}};
    for (const auto& row : rows) {
        InitRandomStream(row.seed, row.number);
        for (const unsigned long number : row.first) EXPECT_EQ(gsl_rng_get(r), number);
    }
    InitRandomStream(7, 2);
    for (int n = 0; n < 1299; n++) gsl_rng_get(r);
    EXPECT_EQ(gsl_rng_get(r), 4180591556U);
}

TEST(RandomLists, ShufflesFollowTheForwardWalk) {
    gsl_rng* own = gsl_rng_alloc(gsl_rng_mt19937);
    gsl_rng_set(own, 20240501);
    InitRndNumberGenerator(5489);
    EXPECT_EQ(gsl_rng_get(r), 3499211612u) << "the Mersenne twister";
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

/// Members of a group change places as a list of their own does; groups follow their labels, and
/// what is not selected stays.
TEST(RandomLists, GroupsAndSelectedPlacesAreShuffledAmongThemselves) {
    const int groups[] = {4, 1, 4, 0, 1, 4, 1, 9, 4, 1};
    const bool mask[] = {false, true, false, true, true, false, true, false, false, true};
    std::vector<int> nested = Identity(10), selected(10, 70);
    std::vector<int> expectedNested = nested, expectedSelected = selected;
    gsl_rng* own = gsl_rng_alloc(gsl_rng_mt19937);
    gsl_rng_set(own, 99);
    const auto shuffle = [own](const std::vector<int>& members, std::vector<int>* list) {
        std::vector<int> order = members;
        FisherYates(own, &order);
        for (size_t m = 0; m < members.size(); m++) (*list)[members[m] - 1] = order[m];
    };
    for (const std::vector<int>& members : {std::vector<int>{4}, {2, 5, 7, 10}, {1, 3, 6, 9}, {8}})
        shuffle(members, &expectedNested);
    shuffle({2, 4, 5, 7, 10}, &expectedSelected);
    gsl_rng_free(own);
    InitRndNumberGenerator(99);
    RndListNestedNew(10, groups, 1, nested.data());
    EXPECT_EQ(nested, expectedNested);
    RndListSelect(10, selected.data(), mask);
    EXPECT_EQ(selected, expectedSelected);
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

TEST(SubsetWalk, NumbersOfSubsets) {
    std::vector<int> next = {1, 2, 3}, numbered(3);
    for (int number = 0; number < 35; number++) {
        SubsetOfNumber(7, 3, number, numbered.data());
        EXPECT_EQ(numbered, next);
        NextSubset(7, 3, next.data());
    }
    EXPECT_EQ(next, (std::vector{5, 6, 7}));
    EXPECT_EQ(CountSubsets64(66, 33), 7219428434016265740) << "Pascal's triangle in whole numbers";
    EXPECT_EQ(CountSubsets64(67, 33), INT64_MAX);
    std::vector<int> last(33);
    SubsetOfNumber(66, 33, CountSubsets64(66, 33) - 1, last.data());
    EXPECT_EQ(last.front(), 34);
}

}  // namespace
