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

add_library(quern_any_length INTERFACE)
target_compile_features(quern_any_length INTERFACE cxx_std_20)
target_compile_options(quern_any_length INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow $<$<COMPILE_LANGUAGE:CXX>:-Wconversion> -Werror
  $<$<CXX_COMPILER_ID:Clang>:-Wno-unknown-pragmas>  # it fuzzes; GCC's pragmas are for the product's speed
  # A handler's thread-local state is read on every access; hosts are loaded at program start, so the cheapest model holds.
  -ftls-model=initial-exec)
# For targets whose code is partly assembly: what the assembler warns of does not work on every processor.
add_library(quern_strict_assembly INTERFACE)
target_compile_options(quern_strict_assembly INTERFACE -Wa,--fatal-warnings)
target_compile_definitions(quern_any_length INTERFACE _GNU_SOURCE)
target_include_directories(quern_any_length INTERFACE ${PROJECT_SOURCE_DIR})
if(QUERN_SANITIZE)
  # GCC takes long to compile sanitized code: -Og, and lines alone for a report's stack. Clang's is for fuzzing, fast.
  target_compile_options(quern_any_length INTERFACE -fsanitize=${QUERN_SANITIZE} -fno-sanitize-recover=all
                                                 -fno-omit-frame-pointer "$<$<CXX_COMPILER_ID:GNU>:-Og;-g1>")
  target_link_options(quern_any_length INTERFACE -fsanitize=${QUERN_SANITIZE})
endif()

# quern_options, quern_options_512 ...: that, and a vector length.
foreach(VL_BITS IN LISTS quern_vector_lengths)
  quern_length_suffix(suffix ${VL_BITS})
  add_library(quern_options${suffix} INTERFACE)
  target_compile_definitions(quern_options${suffix} INTERFACE QUERN_VL_BITS=${VL_BITS})
  target_link_libraries(quern_options${suffix} INTERFACE quern_any_length)
endforeach()

# quern_library(NAME [ANY_LENGTH PATTERNS...] USES TARGETS...): the static library of the current folder and its
# sub-folders, for the vector length at hand, and a piece of the sve_core of that length. What it may include is what it
# links, so that a wrong include does not link. The sources that ANY_LENGTH names know no vector length, and are compiled
# once for all.
function(quern_library name)
  cmake_parse_arguments(ARG "" "" "ANY_LENGTH;USES" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  set(objects "")
  if(ARG_ANY_LENGTH)
    list(TRANSFORM ARG_ANY_LENGTH PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    file(GLOB any_length CONFIGURE_DEPENDS ${ARG_ANY_LENGTH})
    list(REMOVE_ITEM sources ${any_length})
    if(NOT TARGET ${name}_any_length)
      add_library(${name}_any_length OBJECT ${any_length})
      target_link_libraries(${name}_any_length PRIVATE quern_any_length)
    endif()
    set(objects $<TARGET_OBJECTS:${name}_any_length>)
  endif()
  list(TRANSFORM ARG_USES APPEND "${quern_suffix}")
  set(target ${name}${quern_suffix})
  add_library(${target} STATIC ${sources} ${objects})
  target_link_libraries(${target} PUBLIC quern_options${quern_suffix} ${ARG_USES})
  set_property(GLOBAL APPEND PROPERTY quern_core_objects${quern_suffix} $<TARGET_OBJECTS:${target}> ${objects})
endfunction()
