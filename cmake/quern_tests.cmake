# GoogleTest from its packaged source, so that it is built by the same compiler as the tests on either platform, and
# quern_test(), which makes one test program of a folder.
set(GTEST_SOURCE /usr/src/googletest CACHE PATH "Source of GoogleTest (Debian package googletest)")
if(NOT EXISTS ${GTEST_SOURCE}/CMakeLists.txt)
  message(FATAL_ERROR "GoogleTest's source is not in ${GTEST_SOURCE}: run scripts/setup, or give -DGTEST_SOURCE=DIR, "
                      "or build without tests by -DQUERN_TESTS=OFF.")
endif()
set(INSTALL_GTEST OFF CACHE INTERNAL "")
add_subdirectory(${GTEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
foreach(target gtest gtest_main gmock gmock_main)
  target_compile_options(${target} PRIVATE -w -O1)  # not ours to mend, nor to wait for
endforeach()

# quern_precompile(TARGET): GoogleTest's headers take longer to read than most tests; all programs share one reading.
function(quern_precompile target)
  get_property(owner GLOBAL PROPERTY quern_precompiled)
  if(owner)
    target_precompile_headers(${target} REUSE_FROM ${owner})
  else()
    target_precompile_headers(${target} PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
    set_property(GLOBAL PROPERTY quern_precompiled ${target})
  endif()
endfunction()

# quern_test(NAME [FOLDERS SUB-FOLDERS...] USES TARGETS...): every *_test.cpp of the current folder and of the named
# sub-folders as one program, run by CTest. Its trace records go to the recorder of tests/support/, unless it uses
# quern_utils.
function(quern_test name)
  cmake_parse_arguments(ARG "" "" "FOLDERS;USES" ${ARGN})
  list(TRANSFORM ARG_FOLDERS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  list(TRANSFORM ARG_FOLDERS APPEND /*_test.cpp)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*_test.cpp ${ARG_FOLDERS})
  add_executable(${name} ${sources})
  if(NOT quern_utils IN_LIST ARG_USES)
    list(PREPEND ARG_USES test_support)
  endif()
  target_link_libraries(${name} PRIVATE quern_options ${ARG_USES} GTest::gmock_main)
  quern_precompile(${name})
  add_test(NAME ${name} COMMAND ${name})
endfunction()
