#pragma once
/// \file
/// The data set in memory as the simulation uses it.

/// The data set's arrays that the settings of an analysis and the test use (TSLGLOB/dataset.h), for
/// a world of that many traits and OTUs, for the length of a scope, with the groups that the
/// settings make. Nothing of a closed session remains in them.
class DataSetScratch {
  public:
    DataSetScratch(int traits, int OTUs);
    ~DataSetScratch();
    DataSetScratch(const DataSetScratch&) = delete;
    DataSetScratch& operator=(const DataSetScratch&) = delete;
};
