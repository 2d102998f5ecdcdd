# How every target of this project is made. A library links only libraries that were made before it (src/CMakeLists.txt
# goes from the ground floor up) and sees the headers of what it links and no others, so that an include that points up a
# floor does not compile.

# Who owns which file and who links whom, one line each, for scripts/floors: "owner LIBRARY FILE", "link LIBRARY OTHER".
set(MARLEVO_FLOORS ${CMAKE_BINARY_DIR}/floors.txt)
file(WRITE ${MARLEVO_FLOORS} "")
file(REMOVE_RECURSE ${CMAKE_BINARY_DIR}/include)

# Warnings and sanitizers, for our own targets only.
add_library(marlevo_options INTERFACE)
target_compile_options(marlevo_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
# With -Wconversion clang also warns of an int that is used as an index; g++ does not. A cast at every index would hide the
# few casts that say something.
target_compile_options(marlevo_options INTERFACE $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>)
# g++ warns when a class outside the main file has a member whose type lies in an unnamed namespace, since two sources could
# then disagree about the class. In a unity build every source is such an outside file, and the warning is a false alarm.
# clang-tidy reads the commands of g++ and does not know the option; it looks at a build without unity.
if(CMAKE_UNITY_BUILD)
  target_compile_options(marlevo_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endif()
if(MARLEVO_SANITIZE)
  target_compile_options(marlevo_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                                   -fno-omit-frame-pointer)
  target_link_options(marlevo_options INTERFACE -fsanitize=address,undefined)
endif()
if(MARLEVO_FUZZ)
  # Only counters of the ways taken: recording comparisons as well makes the fuzzer half as fast.
  target_compile_options(marlevo_options INTERFACE -fsanitize-coverage=inline-8bit-counters,pc-table)
endif()
# For tests without windows: to optimise their own sources fully takes longer than it saves.
add_library(marlevo_quick INTERFACE)
target_compile_options(marlevo_quick INTERFACE $<$<CONFIG:Release>:-O1>)
if(WIN32)
  target_link_options(marlevo_options INTERFACE -static -s)  # one file that runs on every Windows
endif()

# Every target that shows windows or prints uses the same Qt modules, so that all can share one precompiled header.
add_library(marlevo_qt INTERFACE)
target_link_libraries(marlevo_qt INTERFACE Qt6::Widgets Qt6::PrintSupport)
target_compile_definitions(marlevo_qt INTERFACE QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_FOREACH)

# marlevo_library(NAME [QT] [SOURCES ...] [HEADERS ...] [LINKS ...] [PRIVATE_LINKS ...])
# The header beside each source belongs to the library; HEADERS names those that have no source. What the library's own
# headers include stands in LINKS, what only its sources include in PRIVATE_LINKS.
function(marlevo_library name)
  cmake_parse_arguments(arg "QT" "" "SOURCES;HEADERS;LINKS;PRIVATE_LINKS" ${ARGN})
  if(arg_SOURCES)
    add_library(${name} STATIC ${arg_SOURCES})
    # The macros of Windows' own headers, such as CopyFile, must not reach what is compiled after them.
    set(of_windows ${arg_SOURCES})
    list(FILTER of_windows INCLUDE REGEX "_windows\\.cpp$")
    set_source_files_properties(${of_windows} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    set(public PUBLIC)
    target_link_libraries(${name} PRIVATE marlevo_options ${arg_PRIVATE_LINKS})
  else()
    add_library(${name} INTERFACE)
    set(public INTERFACE)
  endif()
  target_link_libraries(${name} ${public} ${arg_LINKS})
  target_include_directories(${name} ${public} ${CMAKE_BINARY_DIR}/include/${name})
  marlevo_register(${name} ${arg_SOURCES} ${arg_HEADERS} LINKS ${arg_LINKS} ${arg_PRIVATE_LINKS})
  if(arg_QT)
    target_link_libraries(${name} PUBLIC marlevo_qt)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    marlevo_share_qt_header(${name})
  endif()
endfunction()

# marlevo_register(NAME FILES ... LINKS ...): tells scripts/floors of a target, refuses a link to a target that stands
# above, and fills the target's include folder with links to its own headers.
function(marlevo_register name)
  cmake_parse_arguments(arg "" "" "LINKS" ${ARGN})
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR}/src OUTPUT_VARIABLE folder)
  set(include ${CMAKE_BINARY_DIR}/include/${name})
  file(MAKE_DIRECTORY ${include}/${folder})
  foreach(file ${arg_UNPARSED_ARGUMENTS})
    string(REGEX REPLACE "\\.cpp$" ".h" header ${file})
    foreach(owned ${file} ${header})
      cmake_path(SET path NORMALIZE ${folder}/${owned})
      if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${owned} AND NOT EXISTS ${include}/${path})
        file(APPEND ${MARLEVO_FLOORS} "owner ${name} ${path}\n")
        if(owned MATCHES "\\.h$")
          file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${owned} ${include}/${path} SYMBOLIC)
        endif()
      endif()
    endforeach()
  endforeach()
  foreach(link ${arg_LINKS})
    if(NOT TARGET ${link})
      message(FATAL_ERROR "${name} links ${link}, which stands above it or does not exist")
    endif()
    file(APPEND ${MARLEVO_FLOORS} "link ${name} ${link}\n")
  endforeach()
endfunction()

# The Qt headers are most of a window's compile time: they are compiled once.
function(marlevo_share_qt_header name)
  get_target_property(windows_entry ${name} WIN32_EXECUTABLE)
  if(WIN32 AND windows_entry)
    return()  # such a program is compiled with other options, and then a precompiled header cannot be shared
  endif()
  marlevo_share_header(${name} qt_header <QtWidgets/QtWidgets> marlevo_qt)
endfunction()

# Compiles `header` once, in the target `holder`, for all that include it through this.
function(marlevo_share_header name holder header library)
  if(NOT TARGET ${holder})
    file(WRITE ${CMAKE_BINARY_DIR}/${holder}.cpp "")
    add_library(${holder} OBJECT ${CMAKE_BINARY_DIR}/${holder}.cpp)
    target_link_libraries(${holder} PRIVATE marlevo_options ${library})
    target_precompile_headers(${holder} PRIVATE ${header})
  endif()
  target_precompile_headers(${name} REUSE_FROM ${holder})
endfunction()

# marlevo_support(NAME [QT] SOURCES ... LINKS ...): what several programs of tests and bench share.
function(marlevo_support name)
  cmake_parse_arguments(arg "QT" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${arg_SOURCES})
  target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE marlevo_options)
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/tests)
  if(arg_QT)
    target_link_libraries(${name} PUBLIC marlevo_qt)
    marlevo_share_qt_header(${name})
  endif()
endfunction()

# marlevo_test(NAME [QT] SOURCES ... [LINKS ...]): one ctest entry a program. With QT the program runs inside a
# QApplication (tests/support/qt_main.cpp), otherwise under GoogleTest's own main.
function(marlevo_test name)
  cmake_parse_arguments(arg "QT" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE marlevo_options ${arg_LINKS} GTest::gtest)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  if(arg_QT)
    target_link_libraries(${name} PRIVATE test_support_qt)
    marlevo_share_qt_header(${name})
    if(WIN32)
      qt_import_plugins(${name} INCLUDE Qt6::QOffscreenIntegrationPlugin)
    endif()
  else()
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
    target_link_libraries(${name} PRIVATE marlevo_quick)
    marlevo_share_header(${name} test_header <gtest/gtest.h> "marlevo_quick;GTest::gtest")
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 600 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()

# marlevo_bench(NAME [QT] SOURCES ... [LINKS ...]): a program that prints each figure beside its yardstick.
function(marlevo_bench name)
  cmake_parse_arguments(arg "QT" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE marlevo_options ${arg_LINKS})
  if(arg_QT)
    target_link_libraries(${name} PRIVATE marlevo_qt)
    marlevo_share_qt_header(${name})
  endif()
endfunction()
