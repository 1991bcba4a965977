# Run at the end of an installation; one into a folder for a package tells nothing.
set(folder "${CMAKE_INSTALL_PREFIX}/${TESSEL_BINDIR}")
string(REPLACE ":" ";" path "$ENV{PATH}")
list(FIND path "${folder}" place)
if(place LESS 0 AND "$ENV{DESTDIR}" STREQUAL "" AND NOT CPACK_PACKAGE_NAME)
  message(STATUS "${folder} is not in your path; for this shell:  PATH=${folder}:$PATH")
endif()
