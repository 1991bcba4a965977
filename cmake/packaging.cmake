# Packages: cpack -G DEB in a build folder for Debian and its kin, cpack -G TGZ or -G ZIP for a static
# program (-DTESSEL_STATIC=ON) that is unpacked. scripts/release.sh makes all of them.
set(CPACK_PACKAGE_NAME tessel)
set(CPACK_PACKAGE_VENDOR TESSEL)
set(CPACK_PACKAGE_CONTACT "TESSEL maintainers <maintainers@tessel.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "character-based community analysis for ecologists")
set(CPACK_PACKAGE_DESCRIPTION
"TESSEL scales the traits of species up to communities and tests, by
permutation of the species, which patterns of community assembly follow the
environment: convergence of mean traits, divergence beyond the means,
phylogenetic structure. It reports the functional and phylogenetic diversity
of each community, finds the subset of the traits that expresses a pattern
best, and simulates community assembly. It is used by commands over CSV
tables or as a dialogue.")
set(CPACK_STRIP_FILES ON)
# Not TESSEL-mpi, which would bring MPI to every machine.
set(CPACK_INSTALL_CMAKE_PROJECTS "${PROJECT_BINARY_DIR};TESSEL;Unspecified;/")
set(CPACK_PACKAGE_FILE_NAME "tessel-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}")
string(TOLOWER "${CPACK_PACKAGE_FILE_NAME}" CPACK_PACKAGE_FILE_NAME)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

# CPack hands on to the script what is named CPACK_...
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/package_files.cmake")
set(CPACK_TESSEL_SOURCE "${PROJECT_SOURCE_DIR}")
set(CPACK_TESSEL_DOCUMENTS "${CMAKE_INSTALL_DOCDIR}")
include(CPack)
