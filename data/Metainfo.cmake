# Writes what software centres show of the program.
#
# cmake -DQUILLON_PICTURES=ADDRESS -P Metainfo.cmake writes it into the current folder.

# picture(FILE ENGLISH GERMAN): a picture of docs/images and what it shows.
function(picture file english german)
    string(APPEND QUILLON_SCREENSHOTS
           "    <screenshot${ARGN}>\n"
           "      <caption>${english}</caption>\n"
           "      <caption xml:lang=\"de\">${german}</caption>\n"
           "      <image>${QUILLON_PICTURES}/${file}</image>\n"
           "    </screenshot>\n")
    set(QUILLON_SCREENSHOTS "${QUILLON_SCREENSHOTS}" PARENT_SCOPE)
endfunction()

set(QUILLON_SCREENSHOTS)
# The pictures are fetched from the web, so there are none without an address.
if(QUILLON_PICTURES)
    string(APPEND QUILLON_SCREENSHOTS "\n  <screenshots>\n")
    picture(panel.png "The best matches at every keystroke"
            "Bei jedem Tastendruck die besten Treffer" " type=\"default\"")
    picture(panel-most-used.png "The folders that you open most, before you type"
            "Vor dem Tippen die Ordner, die Sie am häufigsten öffnen")
    picture(panel-dark.png "In the dark style of the desktop" "Im dunklen Stil der Arbeitsfläche")
    picture(preferences-search.png "The folders to search, and what is left out"
            "Die Ordner, in denen gesucht wird, und was ausgelassen wird")
    string(APPEND QUILLON_SCREENSHOTS "  </screenshots>")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/org.quillon.Quillon.metainfo.xml.in
               ${CMAKE_CURRENT_BINARY_DIR}/org.quillon.Quillon.metainfo.xml @ONLY)
