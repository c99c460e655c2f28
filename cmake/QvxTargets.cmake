# What every target of the project has in common: warnings, sanitizers, and the split of a folder into its two halves.

# A file's suffix tells its half: these touch the operating system, everything else is portable.
set(QVX_WINDOWS_SUFFIXES "_(window|control|dialog|object|gdi|win32)\\.cpp$")
# Whole folders that exist only on Windows.
set(QVX_WINDOWS_FOLDERS "^(win|com|server)$")

add_library(qvx_options INTERFACE)
target_compile_features(qvx_options INTERFACE cxx_std_20)
target_include_directories(qvx_options INTERFACE ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_options(qvx_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused
  -Wimplicit-fallthrough -Wextra-semi)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(qvx_options INTERFACE -Wduplicated-cond -Wduplicated-branches -Wlogical-op
    # GCC 12 reports an overlap that cannot be in `"literal" + std::string` (its own bug 105651).
    -Wno-restrict)
endif()
if(QVX_SANITIZE)
  target_compile_options(qvx_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(qvx_options INTERFACE -fsanitize=address,undefined)
endif()
if(WIN32)
  # The "W" calls only; Windows 7 and later. The system's headers are C++98-minded, so two warnings of theirs stay off.
  target_compile_definitions(qvx_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0A00 WINVER=0x0A00)
  # The system's interfaces have no virtual destructors and need none: a COM object is deleted by its own Release only.
  target_compile_options(qvx_options INTERFACE -Wno-unknown-pragmas -Wno-cast-function-type -Wno-non-virtual-dtor)
  target_link_options(qvx_options INTERFACE -static)
endif()

# qvx_component(<name> <folder> [DEPENDS <component>...])
# Makes <name>_rules from the folder's portable sources and, on Windows, <name>_windows from its window units. Either is left out
# when the folder has no such source. A window unit may include the generated interface header of the type library.
function(qvx_component name folder)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
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
  if(rules)
    add_library(${name}_rules STATIC ${rules})
  else()
    add_library(${name}_rules INTERFACE)
  endif()
  set(scope PUBLIC)
  if(NOT rules)
    set(scope INTERFACE)
  endif()
  target_link_libraries(${name}_rules ${scope} qvx_options)
  foreach(dependency IN LISTS ARG_DEPENDS)
    target_link_libraries(${name}_rules ${scope} ${dependency}_rules)
  endforeach()
  if(WIN32 AND windows)
    add_library(${name}_windows OBJECT ${windows})
    target_link_libraries(${name}_windows PUBLIC qvx_options ${name}_rules qvx_typelib)
  endif()
endfunction()

# qvx_gtest(<target> <sources>...): a GoogleTest executable; GoogleTest itself is built from the distribution's sources, for whatever
# the target platform is.
function(qvx_gtest target)
  if(NOT TARGET qvx_googletest)
    set(root /usr/src/googletest)
    add_library(qvx_googletest STATIC ${root}/googletest/src/gtest-all.cc ${root}/googlemock/src/gmock-all.cc)
    target_include_directories(qvx_googletest SYSTEM PUBLIC ${root}/googletest/include ${root}/googlemock/include)
    target_include_directories(qvx_googletest PRIVATE ${root}/googletest ${root}/googlemock)
    if(QVX_SANITIZE)
      target_compile_options(qvx_googletest PUBLIC -fsanitize=address,undefined)
      target_link_options(qvx_googletest PUBLIC -fsanitize=address,undefined)
    endif()
  endif()
  add_executable(${target} ${ARGN})
  target_link_libraries(${target} PRIVATE qvx_options qvx_googletest)
endfunction()
