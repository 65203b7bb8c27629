# The compiler settings that all targets share, and quern_library(), which makes a folder's library.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

add_library(quern_options INTERFACE)
target_compile_features(quern_options INTERFACE cxx_std_20)
target_compile_options(quern_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow $<$<COMPILE_LANGUAGE:CXX>:-Wconversion> -Werror
  $<$<CXX_COMPILER_ID:Clang>:-Wno-unknown-pragmas>  # it fuzzes; GCC's pragmas are for the product's speed
  # A handler's thread-local state is read on every access; hosts are loaded at program start, so the cheapest model holds.
  -ftls-model=initial-exec)
# For targets whose code is partly assembly: what the assembler warns of does not work on every processor.
add_library(quern_strict_assembly INTERFACE)
target_compile_options(quern_strict_assembly INTERFACE -Wa,--fatal-warnings)
target_compile_definitions(quern_options INTERFACE QUERN_VL_BITS=${VL_BITS} _GNU_SOURCE)
target_include_directories(quern_options INTERFACE ${PROJECT_SOURCE_DIR})
if(QUERN_SANITIZE)
  # GCC takes long to compile sanitized code: -Og, and lines alone for a report's stack. Clang's is for fuzzing, fast.
  target_compile_options(quern_options INTERFACE -fsanitize=${QUERN_SANITIZE} -fno-sanitize-recover=all
                                                 -fno-omit-frame-pointer "$<$<CXX_COMPILER_ID:GNU>:-Og;-g1>")
  target_link_options(quern_options INTERFACE -fsanitize=${QUERN_SANITIZE})
endif()

# quern_library(NAME USES TARGETS...): the static library of the current folder and its sub-folders. What it may include
# is what it links, so that a wrong include does not link.
function(quern_library name)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC quern_options ${ARG_USES})
endfunction()
