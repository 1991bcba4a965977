// One rank: all there is without MPI (ranks_mpi.cpp).

#include "mxlibPar/ranks.h"

#include <cstdlib>

int Rank() {
    return 0;
}

int Ranks() {
    return 1;
}

void JoinRanks(int*, char***) {}

void EndRanks(int status) {
    std::exit(status);
}

std::string ShareBytes(const std::string& bytes) {
    return bytes;
}

std::int64_t ShareNumber(std::int64_t number) {
    return number;
}

void RunAlone(const std::function<void()>& body) {
    body();
}

void HandOut(std::int64_t items, const std::function<std::string(const WorkStretch&)>& work,
             const std::function<void(const WorkStretch&, const std::string&)>& take) {
    const WorkStretch all{0, items};
    if (items > 0) take(all, work(all));
}

FILE* ShareFile(FILE* opened) {
    return opened;
}
