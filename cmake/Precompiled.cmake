# Headers that are compiled once for all that include them, which more than halves a first build.
#
# A compiler cache saves more and cannot share them between folders, so a build that has one does without
# them. So do the builds for tools that read the sources by themselves. Those builds also show a missing
# include.
set(precompile ON)
if(CMAKE_CXX_COMPILER_LAUNCHER)
    set(precompile OFF)
endif()
option(QUILLON_PRECOMPILE "Precompile the headers of the toolkit and the standard library"
    ${precompile})

set(standard_headers
    <algorithm> <array> <atomic> <charconv> <chrono> <cstdio> <cstdlib> <filesystem> <functional>
    <map> <memory> <mutex> <optional> <set> <span> <stop_token> <string> <string_view>
    <system_error> <thread> <unordered_map> <unordered_set> <utility> <variant> <vector>)
set(widget_headers
    <QAbstractItemView> <QApplication> <QBoxLayout> <QCheckBox> <QComboBox> <QGridLayout>
    <QKeyEvent> <QLabel> <QLineEdit> <QMenu> <QPainter> <QPointer> <QPushButton> <QScreen>
    <QScrollBar> <QStyle> <QTimer>)

# A unit refuses headers that were compiled with other options than its own.
if(QUILLON_PRECOMPILE)
    add_compile_options(-pthread)
endif()

# quillon_precompile(TARGET KIND): the target's sources use the precompiled headers of the kind. The
# target has to link the libraries that the kind links.
#   STANDARD        the standard library, in targets that see Qt Core
#   WIDGETS         the same and Qt Widgets
#   TESTS           STANDARD and GoogleTest
#   WIDGET_TESTS    WIDGETS and GoogleTest
#   NONE
function(quillon_precompile target kind)
    if(NOT QUILLON_PRECOMPILE OR kind STREQUAL "NONE")
        return()
    endif()
    set(name quillon_precompiled_${kind})
    if(NOT TARGET ${name})
        set(headers ${standard_headers})
        set(libraries Qt6::Core)
        if(kind MATCHES "WIDGET")
            list(APPEND headers ${widget_headers})
            list(APPEND libraries Qt6::Widgets)
        endif()
        if(kind MATCHES "TESTS")
            list(APPEND headers <gmock/gmock.h> <gtest/gtest.h>)
            list(APPEND libraries GTest::gmock)
        endif()
        set(source ${CMAKE_BINARY_DIR}/precompiled/${kind}.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "// Only the headers matter.\n")
        add_library(${name} OBJECT EXCLUDE_FROM_ALL ${source})
        target_link_libraries(${name} PRIVATE ${libraries})
        target_precompile_headers(${name} PRIVATE ${headers})
    endif()
    target_precompile_headers(${target} REUSE_FROM ${name})
endfunction()
