# The common parts of all targets of the project: warnings, sanitizers, and the split of a folder into its two halves.

# A file's suffix decides its half: these touch the operating system, everything else is portable.
set(QVX_WINDOWS_SUFFIXES "_(window|control|dialog|object|gdi|win32)\\.cpp$")
# Whole folders that exist only on Windows.
set(QVX_WINDOWS_FOLDERS "^(com|win|kit|server|qvxhost|soak/watch|samples/ado)$")

# Window units wait for the user and the system, not for the processor, and are optimised for size; except for these,
# which do not wait.
set(QVX_BUSY_COMPONENTS archivers)
# So are rules, except for those that go through many cells or bytes.
set(QVX_BUSY_RULES archivers common drawing flexgrid grid)
# Their sources that wait for the user rather than go through cells; the server optimises them for size.
set(QVX_CALM_RULES accessible_events accessible_view binding button_steps caption_list cell_formats cell_step
  column_draft column_drag column_index column_order column_settings context_menu copied_cells date_column
  editor_placement filter_condition filter_strip find_bar_layout find_keys footer format_string host_verdicts
  lifecycle list_arrows navigation number_format page_layout paint_dragging projection resizing row_commands
  row_filter scrolling sort_mark tab_way user_layout)
list(JOIN QVX_CALM_RULES "|" QVX_CALM_RULES)
set(QVX_CALM_RULES "/(controls/grid|widgets/flexgrid)/(${QVX_CALM_RULES})[.]cpp$")

# What is in no other program of Windows than the server is compiled without the names of types, which take 80 KB: those
# of the functions of all property tables. A dynamic_cast in the components that these stand on would crash on their
# objects, so there is none.
set(QVX_SERVER_ONLY flexgrid combo textbox button dialogs kit buttons textedit grid borders menus backup server)
set(QVX_SERVER_OPTIONS -fno-rtti)

add_library(qvx_options INTERFACE)
target_compile_features(qvx_options INTERFACE cxx_std_20)
target_include_directories(qvx_options INTERFACE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_BINARY_DIR}/generated)
target_compile_options(qvx_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused
  -Wimplicit-fallthrough -Wextra-semi)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(qvx_options INTERFACE -Wduplicated-cond -Wduplicated-branches -Wlogical-op
    # GCC 12 reports an impossible overlap in `"literal" + std::string` (its own bug 105651).
    -Wno-restrict)
endif()
if(QVX_SANITIZE)
  target_compile_options(qvx_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(qvx_options INTERFACE -fsanitize=address,undefined)
endif()
if(WIN32)
  # Only the "W" calls; Windows 7 and later. The system's headers are written for C++98, so two warnings about them are
  # off.
  target_compile_definitions(qvx_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0A00 WINVER=0x0A00)
  # The system's interfaces have no virtual destructors and need none: only its own Release deletes a COM object.
  target_compile_options(qvx_options INTERFACE -Wno-unknown-pragmas -Wno-cast-function-type -Wno-non-virtual-dtor)
  target_link_options(qvx_options INTERFACE -static)
  # The same bytes wherever and whenever a commit is built.
  # The compiler's cache makes paths relative to the folder of the build; so does the second option.
  add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}=. -ffile-prefix-map=${CMAKE_BINARY_DIR}/=)
  add_link_options(LINKER:--no-insert-timestamp,--build-id,--gc-sections)
  # A damaged stack frame ends the process. Only the compiler is given the option: with it, the linker would add the
  # toolchain's version of what every program gets here.
  add_compile_options(-fstack-protector-strong)
  add_library(qvx_stack_guard STATIC runtime/stack_guard.cpp)
  target_link_libraries(qvx_stack_guard PRIVATE qvx_options)
  target_compile_options(qvx_stack_guard PRIVATE -fno-stack-protector)
  link_libraries(qvx_stack_guard)
endif()

# Line numbers for the symbols that are kept apart; without the compiler's options, which depend on its cache.
set(QVX_LINE_NUMBERS -g1 -gno-record-gcc-switches)

# The 32-bit server has to stay below 2 MB: its busy rules are optimised for speed, but without padding, and without
# vectors other than those that they use themselves. Every processor that runs a supported Windows has SSE2.
set(QVX_BUSY_OPTIONS "")
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "i686")
  # Code that reaches its variables through a frame pointer is shorter, and so are the tables for unwinding it.
  add_compile_options(-fno-omit-frame-pointer)
  set(QVX_BUSY_OPTIONS -fno-align-functions -fno-align-loops -fno-align-jumps -fno-align-labels -fno-tree-vectorize
    -fno-reorder-blocks-and-partition -fomit-frame-pointer -msse2)
endif()

option(QVX_UNITY "Compile the sources of a component some at a time, which builds faster than each by itself" ON)

# qvx_batches(<variable> <target> <source>...): returns the sources, or files that include a batch of them each. CMake's
# own unity builds name sources by their full paths; these files are the same in every folder, so that the compiler's
# cache serves them all.
function(qvx_batches variable target)
  if(NOT QVX_UNITY)
    set(${variable} ${ARGN} PARENT_SCOPE)
    return()
  endif()
  set(batches "")
  set(pending ${ARGN})
  list(LENGTH pending left)
  while(left)
    list(SUBLIST pending 0 12 batch)
    list(REMOVE_ITEM pending ${batch})
    list(LENGTH pending left)
    set(content "")
    foreach(source IN LISTS batch)
      file(RELATIVE_PATH source ${PROJECT_SOURCE_DIR} ${source})
      string(APPEND content "#include \"${source}\"\n")
    endforeach()
    list(LENGTH batches number)
    set(file ${PROJECT_BINARY_DIR}/batches/${target}_${number}.cpp)
    file(CONFIGURE OUTPUT ${file} CONTENT "${content}" @ONLY)
    list(APPEND batches ${file})
  endwhile()
  set(${variable} ${batches} PARENT_SCOPE)
endfunction()

# qvx_system_headers(<target> [<option>...]): the system's headers and the standard library's, precompiled once for all
# window units that are optimised for size and have the same further options.
function(qvx_system_headers target)
  if(TARGET ${target})
    return()
  endif()
  set(empty ${PROJECT_BINARY_DIR}/batches/${target}.cpp)
  file(CONFIGURE OUTPUT ${empty} CONTENT "" @ONLY)
  add_library(${target} OBJECT ${empty})
  target_link_libraries(${target} PRIVATE qvx_options)
  target_compile_options(${target} PRIVATE -Os ${QVX_LINE_NUMBERS} ${ARGN})
  target_precompile_headers(${target} PRIVATE
    <windows.h> <olectl.h> <ocidl.h> <oleauto.h> <commctrl.h>
    <algorithm> <array> <cmath> <cstdint> <functional> <map> <memory> <optional> <set> <span> <string> <string_view>
    <utility> <vector>)
endfunction()

# qvx_component(<name> <folder> [RULES <component>...] [WINDOWS <component>...]) creates <name>_rules from the folder's
# portable sources, linked with the rules of the components after RULES, and on Windows <name>_windows from its window
# units. Either is left out when the folder has no such source. A window unit may include the generated interface header
# of the type library. Window units are linked where a program lists them, so WINDOWS is for the reader and the check.
function(qvx_component name folder)
  cmake_parse_arguments(ARG "" "" "RULES;WINDOWS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  set(rules ${sources})
  set(windows ${sources})
  if(folder MATCHES "${QVX_WINDOWS_FOLDERS}")
    set(rules "")
  else()
    list(FILTER rules EXCLUDE REGEX "${QVX_WINDOWS_SUFFIXES}")
    list(FILTER windows INCLUDE REGEX "${QVX_WINDOWS_SUFFIXES}")
  endif()
  set(calm ${rules})
  list(FILTER calm INCLUDE REGEX "${QVX_CALM_RULES}")
  list(FILTER rules EXCLUDE REGEX "${QVX_CALM_RULES}")
  if(rules)
    qvx_batches(rules_batches ${name}_rules ${rules})
    qvx_batches(calm_batches ${name}_calm_rules ${calm})
    if(WIN32)
      set_source_files_properties(${calm_batches} PROPERTIES COMPILE_OPTIONS -Os)
    endif()
    add_library(${name}_rules STATIC ${rules_batches} ${calm_batches})
  else()
    add_library(${name}_rules INTERFACE)
  endif()
  set(scope PUBLIC)
  if(NOT rules)
    set(scope INTERFACE)
  elseif(WIN32)
    if(name IN_LIST QVX_BUSY_RULES)
      target_compile_options(${name}_rules PRIVATE ${QVX_LINE_NUMBERS} ${QVX_BUSY_OPTIONS})
    else()
      target_compile_options(${name}_rules PRIVATE ${QVX_LINE_NUMBERS} -Os)
    endif()
  endif()
  if(rules AND WIN32 AND name IN_LIST QVX_SERVER_ONLY)
    target_compile_options(${name}_rules PRIVATE ${QVX_SERVER_OPTIONS})
  endif()
  target_link_libraries(${name}_rules ${scope} qvx_options)
  foreach(dependency IN LISTS ARG_RULES)
    target_link_libraries(${name}_rules ${scope} ${dependency}_rules)
  endforeach()
  if(WIN32 AND windows)
    qvx_batches(windows_batches ${name}_windows ${windows})
    add_library(${name}_windows OBJECT ${windows_batches})
    target_link_libraries(${name}_windows PUBLIC qvx_options ${name}_rules qvx_typelib)
    # The precompiled headers are only for sources that are optimised the same way.
    if(NOT name IN_LIST QVX_BUSY_COMPONENTS)
      target_compile_options(${name}_windows PRIVATE -Os ${QVX_LINE_NUMBERS})
      if(name IN_LIST QVX_SERVER_ONLY)
        target_compile_options(${name}_windows PRIVATE ${QVX_SERVER_OPTIONS})
        qvx_system_headers(qvx_server_headers ${QVX_SERVER_OPTIONS})
        target_precompile_headers(${name}_windows REUSE_FROM qvx_server_headers)
      else()
        qvx_system_headers(qvx_system_headers)
        target_precompile_headers(${name}_windows REUSE_FROM qvx_system_headers)
      endif()
    endif()
  endif()
endfunction()

# qvx_alone(<target>) completes a sample program that contains controls without registration: the library is copied
# beside it, again when it has changed.
function(qvx_alone target)
  target_link_options(${target} PRIVATE -municode -static)
  target_link_libraries(${target} PRIVATE qvx_typelib qvx_identifiers ole32 oleaut32 uuid)
  add_dependencies(${target} qvx_server)
  set(files $<TARGET_FILE:qvx_server> ${PROJECT_SOURCE_DIR}/server/Qvx.manifest)
  set_target_properties(${target} PROPERTIES LINK_DEPENDS "${files}")
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${files} $<TARGET_FILE_DIR:${target}>)
endfunction()

# qvx_gtest(<target> <sources>...): creates a GoogleTest executable; GoogleTest itself is built from the distribution's
# sources for the target platform. Its headers, the standard library's and the system's are precompiled once for all
# tests.
function(qvx_gtest target)
  if(NOT TARGET qvx_googletest)
    set(root /usr/src/googletest)
    add_library(qvx_googletest STATIC ${root}/googletest/src/gtest-all.cc)
    target_include_directories(qvx_googletest SYSTEM PUBLIC ${root}/googletest/include)
    target_include_directories(qvx_googletest PRIVATE ${root}/googletest)
    # Most tests wait or call the rules; optimizing them would take longer than it saves.
    target_compile_options(qvx_googletest PUBLIC -O0)
    if(QVX_SANITIZE)
      target_compile_options(qvx_googletest PUBLIC -fsanitize=address,undefined)
      target_link_options(qvx_googletest PUBLIC -fsanitize=address,undefined)
    endif()
  endif()
  if(NOT TARGET qvx_test_headers)
    set(empty ${PROJECT_BINARY_DIR}/batches/test_headers.cpp)
    file(CONFIGURE OUTPUT ${empty} CONTENT "" @ONLY)
    add_library(qvx_test_headers OBJECT ${empty})
    target_link_libraries(qvx_test_headers PRIVATE qvx_options qvx_googletest)
    target_precompile_headers(qvx_test_headers PRIVATE
      <gtest/gtest.h> <algorithm> <array> <cmath> <cstdint> <fstream> <functional> <map> <memory> <optional> <random>
      <set> <span> <sstream> <string> <string_view> <utility> <vector>)
    if(WIN32)
      target_precompile_headers(qvx_test_headers PRIVATE <windows.h> <olectl.h> <ocidl.h> <oleauto.h> <commctrl.h>)
    endif()
  endif()
  if(NOT TARGET qvx_source_folder)
    add_library(qvx_source_folder STATIC ${PROJECT_SOURCE_DIR}/tests/support/source_folder.cpp)
    target_link_libraries(qvx_source_folder PRIVATE qvx_options)
    target_compile_definitions(qvx_source_folder PRIVATE QVX_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  endif()
  add_executable(${target} ${ARGN})
  target_link_libraries(${target} PRIVATE qvx_options qvx_googletest qvx_source_folder)
  target_precompile_headers(${target} REUSE_FROM qvx_test_headers)
endfunction()
