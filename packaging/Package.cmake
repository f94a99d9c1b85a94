# Describes the Debian package, which "./dev package" makes.
set(QUILLON_MAINTAINER "Quillon developers <quillon@quillon.example>"
    CACHE STRING "Who answers for the package: name and address")

# names_in_group(GROUP RESULT) sets RESULT to the names that packages.txt lists in the
# group, joined by commas.
function(names_in_group group result)
    file(STRINGS ${PROJECT_SOURCE_DIR}/packages.txt lines REGEX "^${group} ")
    list(TRANSFORM lines REPLACE "^${group} +" "")
    list(JOIN lines ", " names)
    set(${result} "${names}" PARENT_SCOPE)
endfunction()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/packages.txt)
names_in_group(depends CPACK_DEBIAN_PACKAGE_DEPENDS)
names_in_group(recommends CPACK_DEBIAN_PACKAGE_RECOMMENDS)
names_in_group(suggests CPACK_DEBIAN_PACKAGE_SUGGESTS)
# The toolkit starts on Wayland by a plug-in that is not a library of the program.
get_property(has_wayland GLOBAL PROPERTY QUILLON_WAYLAND)
if(has_wayland)
    string(APPEND CPACK_DEBIAN_PACKAGE_RECOMMENDS ", qt6-wayland")
    string(REPLACE "qt6-wayland, " "" CPACK_DEBIAN_PACKAGE_SUGGESTS "${CPACK_DEBIAN_PACKAGE_SUGGESTS}")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_NAME quillon)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${QUILLON_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "folder finder that answers at every keystroke")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "A hot key brings up a small panel in front of everything. As a few letters of
a folder's path are typed, the best matches are listed, the ones that are
opened most first. Return opens the folder in the file manager, other keys do
what the user has chosen.
.
The index is kept in memory and follows what changes on the disk. The program
quillonctl does the same on the terminal.")
# The package depends on the libraries, in the versions whose symbols are used.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# One file holds the path of the programs, so the tree is made for its final place.
set(CPACK_SET_DESTDIR ON)

string(TIMESTAMP QUILLON_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.in ${CMAKE_BINARY_DIR}/packaging/changelog @ONLY)
set(CPACK_QUILLON_SOURCE ${PROJECT_SOURCE_DIR})
set(CPACK_QUILLON_CHANGELOG ${CMAKE_BINARY_DIR}/packaging/changelog)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/FinishTree.cmake)
include(CPack)
