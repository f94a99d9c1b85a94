# Adds what Debian requires of the installed tree beyond "cmake --install": the legal texts, and
# compressed documents.
set(tree ${CPACK_TEMPORARY_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX})
set(documents ${tree}/share/doc/${CPACK_DEBIAN_PACKAGE_NAME})

file(MAKE_DIRECTORY ${documents})
configure_file(${CPACK_QUILLON_SOURCE}/packaging/copyright ${documents}/copyright COPYONLY)
configure_file(${CPACK_QUILLON_SOURCE}/CHANGELOG.md ${documents}/changelog COPYONLY)
configure_file(${CPACK_QUILLON_CHANGELOG} ${documents}/changelog.Debian COPYONLY)
file(GLOB_RECURSE pages ${tree}/share/man/*.1)
execute_process(
    COMMAND gzip -9n ${documents}/changelog ${documents}/changelog.Debian ${pages}
    COMMAND_ERROR_IS_FATAL ANY)
