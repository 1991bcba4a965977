// The permutation test takes its memory before the first permutation. The counting functions below
// stand in the place of the C library's own in this test program, for GSL too.

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>

#include "mxlib/random_lists.h"
#include "reference/perm_test_data.h"

#if defined(__SANITIZE_ADDRESS__)
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

}  // namespace

#endif
