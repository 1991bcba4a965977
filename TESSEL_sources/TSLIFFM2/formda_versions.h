#pragma once
/// \file
/// Words by which the formatted data file tells its form.

inline constexpr const char* kFormdaVersion = "25Jun2016";      ///< the newest: groups of traits
inline constexpr const char* kFormdaVersion2008 = "18Jan2008";  ///< no groups of traits
inline constexpr const char* kEnvVersion = "97Sep08";  ///< matrix E with its types of variables
inline constexpr const char* kWindowMarker = "SMW";

/// phylogenyMatrixType: what the file holds; any other type holds nothing.
enum PhylogenyMatrixType : int {
    kPhylogenySimilarities = 1,
    kPhylogenyData = 2,
    kPhylogenyDistances = 3
};
