// The permutation test takes its memory before the first permutation, and so does the search of
// trait subsets before the first subset. The counting functions below stand in the place of the C
// library's own in this test program, for GSL too.

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>

#include "mxlib/fuzzy_types.h"
#include "mxlib/random_lists.h"
#include "mxlibRes/distance_cells.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/mantel_sides.h"
#include "mxlibRes/sparse_rows.h"
#include "reference/perm_test_data.h"
#include "support/matrices.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define TESSEL_OWN_ALLOCATOR
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TESSEL_OWN_ALLOCATOR
#endif
#endif

#if defined(__GLIBC__) && !defined(TESSEL_OWN_ALLOCATOR)

namespace {
long allocations = 0;
}

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);

void* malloc(size_t size) {
    allocations++;
    return __libc_malloc(size);
}
void* calloc(size_t count, size_t size) {
    allocations++;
    return __libc_calloc(count, size);
}
void* realloc(void* block, size_t size) {
    allocations++;
    return __libc_realloc(block, size);
}
}

namespace {

long AllocationsOf(PermTestData* data, int iterations) {
    data->record.nIterations = iterations;
    testing::internal::CaptureStdout();  // the progress line
    PermTest_FunctionalPhyl_Correl(&data->record);
    const long before = allocations;
    PermTest_FunctionalPhyl_Correl(&data->record);
    const long count = allocations - before;
    testing::internal::GetCapturedStdout();
    return count;
}

TEST(PermutationTest, AllocatesNothingInAPermutation) {
    InitRndNumberGenerator(3);
    for (const int opt_ro : {1, 2, 3})
        for (const bool phylogeny : {false, true})
            for (const int nested : {0, 1})
                for (const bool plain : {false, true}) {
                    SCOPED_TRACE("measure " + std::to_string(opt_ro));
                    auto data =
                        RandomPermTestData({30, 40, 5, 3, 4, phylogeny ? 3 : 0, 0.3}, 7, opt_ro);
                    data->record.optRestrictPermutNullModel = nested;
                    for (size_t k = 0; k < data->nesting.size(); k++)
                        data->nesting[k] = static_cast<int>(k) % 3;
                    if (plain) data->record.Sb[2][5] = std::numeric_limits<float>::infinity();
                    const long few = AllocationsOf(data.get(), 2);
                    EXPECT_GT(few, 0);
                    EXPECT_EQ(AllocationsOf(data.get(), 12), few);
                }
}

/// Nor does what the search of trait subsets computes for each subset.
TEST(SubsetPrimitives, AllocateNothingForASubset) {
    constexpr int kOTUs = 30, kTypes = 4, kCommunities = 12;
    std::mt19937 random(1);
    auto s = RandomTable<float>(kOTUs, kOTUs, 0.0F, 1.0F, random, 0.3, 1.0F);  // identical OTUs
    auto w = RandomTable<double>(kCommunities, kOTUs, 0.0, 1.0, random, 0.5);
    std::vector<int> partition(kOTUs);
    for (int i = 0; i < kOTUs; i++) partition[i] = i % kTypes;
    Table<float> u(kOTUs, kTypes);
    auto types = MakeFuzzyTypes<float>(kOTUs, kTypes, partition.data());
    auto rows = MakeSparseRows<double>(kCommunities, kOTUs, kTypes, w.operator double**());
    auto columns = MakeColumnTable<double>(kCommunities, kTypes);
    auto room = MakeColumnTable<double>(kCommunities, kTypes);
    MantelSide side = MakeMantelSide(kCommunities);
    MantelSide* moving = &side;
    const MantelPair pair = {&side, &side};
    double r = 0.0;
    const long before = allocations;
    BelongingToTypes<float>(s.operator float**(), &types, u);
    SparseProduct<double>(u.operator float**(), &rows, columns.columns);
    DistanceCells<double>(kCommunities, kTypes, columns.columns, kChord, &room, side.cells);
    CorrelateMantelSides(1, &moving, 1, &pair, &r);
    EXPECT_EQ(allocations, before);
    EXPECT_NEAR(r, 1.0, 1e-12);
}

}  // namespace

#endif
