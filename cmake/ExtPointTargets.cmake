# What every target of the tree shares: output places, warnings, sanitizers, and one function per kind of target.

set(EXTPOINT_LIBRARY_DIR lib/extpoint/libraries)
set(EXTPOINT_PLUGIN_DIR lib/extpoint/plugins)

find_program(EXTPOINT_CCACHE ccache)
if(EXTPOINT_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${EXTPOINT_CCACHE})
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
                    -Wunused -Wformat=2)
if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
  # Qt's logging macros are variadic ones without arguments.
  add_compile_options(-Wno-gnu-zero-variadic-macro-arguments)
endif()
if(EXTPOINT_WERROR)
  add_compile_options(-Werror)
endif()
add_compile_definitions(QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_URL_CAST_FROM_STRING
                        QT_STRICT_ITERATORS)
add_link_options(-Wl,--no-undefined)

if(EXTPOINT_SANITIZE)
  # A third of the time to compile goes into what the address sanitizer or the processor notices anyway: null pointers,
  # the sizes of objects; and into alignment, which this processor does not need.
  add_compile_options(-fsanitize=${EXTPOINT_SANITIZE} -fno-sanitize=null,object-size,alignment -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${EXTPOINT_SANITIZE})
endif()

# Where the loader finds the shared libraries of the tree, relative to the file that needs them, so that the build tree
# and the installed tree work alike. No more than the directories that matter: the loader looks into each of them, and
# into a dozen below, for every library there is, Qt's included, at every start.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)

function(extpoint_place target)
  set_target_properties(${target} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/${EXTPOINT_LIBRARY_DIR}
    INSTALL_RPATH "$ORIGIN/../${EXTPOINT_LIBRARY_DIR};$ORIGIN/../${EXTPOINT_PLUGIN_DIR}")
endfunction()

# extpoint_library(name STATIC|SHARED SOURCES file... [LIBRARIES target...])
# Linked libraries are public: a header of the tree may include a header of whatever its library links.
function(extpoint_library name kind)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_library(${name} ${kind} ${arg_SOURCES})
  target_link_libraries(${name} PUBLIC ${arg_LIBRARIES})
  extpoint_place(${name})
  set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN")
  if(kind STREQUAL SHARED)
    install(TARGETS ${name} LIBRARY DESTINATION ${EXTPOINT_LIBRARY_DIR})
  endif()
endfunction()

# extpoint_plugin(name SOURCES file... [LIBRARIES target...])
# A shared object for the plug-in directory. Other plug-ins may link it; the program never does.
function(extpoint_plugin name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_library(${name} SHARED ${arg_SOURCES})
  target_link_libraries(${name} PUBLIC ${arg_LIBRARIES})
  extpoint_place(${name})
  set_target_properties(${name} PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/${EXTPOINT_PLUGIN_DIR}
    INSTALL_RPATH "$ORIGIN/../libraries;$ORIGIN")
  install(TARGETS ${name} LIBRARY DESTINATION ${EXTPOINT_PLUGIN_DIR})
endfunction()

set(EXTPOINT_TEST_ENVIRONMENT LC_ALL=C.UTF-8 QT_LOGGING_RULES= QT_ACCESSIBILITY=0 NO_AT_BRIDGE=1)

# extpoint_test(name SOURCES file... LIBRARIES target... [LABELS label...] [XCB] [TIMEOUT seconds])
# A Qt Test program. XCB: it needs a real X server and gets a private virtual one with a window manager;
# the others run on the offscreen platform.
function(extpoint_test name)
  cmake_parse_arguments(arg "XCB" "TIMEOUT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} Qt5::Test)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  # A test spends its time in what it tests; optimising it would take two fifths of the time to compile it.
  target_compile_options(${name} PRIVATE -O0)
  target_compile_definitions(${name} PRIVATE
    EXTPOINT_SOURCE_DIR="${CMAKE_SOURCE_DIR}" EXTPOINT_BINARY_DIR="${CMAKE_BINARY_DIR}")
  extpoint_place(${name})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 300)
  endif()
  if(arg_XCB)
    add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/tools/with-x $<TARGET_FILE:${name}>)
    set(platform xcb)
  else()
    add_test(NAME ${name} COMMAND ${name})
    set(platform offscreen)
  endif()
  # What takes long is started first, so that it doesn't run alone at the end.
  set(cost 1)
  if(arg_XCB OR ${name} MATCHES "tst_(reopen|keys|fault_)")
    set(cost 100)
  endif()
  set_tests_properties(${name} PROPERTIES
    LABELS "${arg_LABELS}" TIMEOUT ${arg_TIMEOUT} COST ${cost}
    ENVIRONMENT "QT_QPA_PLATFORM=${platform};${EXTPOINT_TEST_ENVIRONMENT}")
endfunction()

# extpoint_test_sizes(NAME FUNCTION): runs a function of a test for those who want large letters, and on dense screens.
function(extpoint_test_sizes name function)
  foreach(size QT_FONT_DPI=200 QT_SCALE_FACTOR=1.25 QT_SCALE_FACTOR=1.5 QT_SCALE_FACTOR=2)
    add_test(NAME ${name}_${size} COMMAND ${name} ${function})
    set_tests_properties(${name}_${size} PROPERTIES LABELS unit TIMEOUT 60
      ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${EXTPOINT_TEST_ENVIRONMENT};${size}")
  endforeach()
endfunction()
