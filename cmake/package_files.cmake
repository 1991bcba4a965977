# Run by CPack over the files of a package, before it is closed: what Debian's rules ask for, and in
# archives the licences of what a static program holds.
set(top "${CPACK_TEMPORARY_INSTALL_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX}")
set(sources "${CPACK_TESSEL_SOURCE}")
set(documents "${top}/${CPACK_TESSEL_DOCUMENTS}")

if(NOT CPACK_GENERATOR STREQUAL "DEB")
  file(COPY "${sources}/packaging/copyright" "${sources}/packaging/libraries.txt"
       DESTINATION "${documents}")
  return()
endif()

file(RENAME "${documents}" "${top}/share/doc/tessel")
set(documents "${top}/share/doc/tessel")
file(REMOVE "${documents}/LICENSE")  # Debian has the text already; copyright tells where
file(COPY "${sources}/packaging/copyright" DESTINATION "${documents}")
file(COPY_FILE "${sources}/NEWS.md" "${documents}/changelog")
file(STRINGS "${sources}/CITATION.cff" released REGEX "^date-released:")
string(REGEX REPLACE ".*: *" "" released "${released}")
execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C date -u -R -d "${released}"
  OUTPUT_VARIABLE released OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
file(WRITE "${documents}/changelog.Debian"
  "tessel (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium\n\n"
  "  * See changelog.gz.\n\n -- ${CPACK_PACKAGE_CONTACT}  ${released}\n")
execute_process(
  COMMAND gzip -9n "${documents}/changelog" "${documents}/changelog.Debian"
    "${top}/share/man/man1/TESSEL.1"
  COMMAND_ERROR_IS_FATAL ANY)
