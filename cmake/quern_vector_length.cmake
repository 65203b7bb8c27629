# VL_BITS: the vector length of all whose name has none (sve_core, the tests), and of `quern run` unless it is told.
# QUERN_VECTOR_LENGTHS: those that the hosts and sve_core are built for; empty for that one alone.
# After this, quern_vector_lengths has them, VL_BITS first.
set(VL_BITS 2048 CACHE STRING "Vector length in bits: 128, 256, 512, 1024 or 2048")
set(QUERN_VECTOR_LENGTHS "" CACHE STRING "All vector lengths to build for, for example 128;512;2048; empty: VL_BITS")
set(known_lengths 128 256 512 1024 2048)
set_property(CACHE VL_BITS PROPERTY STRINGS ${known_lengths})

foreach(length IN LISTS VL_BITS QUERN_VECTOR_LENGTHS)
  if(NOT length IN_LIST known_lengths)
    message(FATAL_ERROR "'${length}' is no vector length; VL_BITS and QUERN_VECTOR_LENGTHS take powers of two from 128 "
                        "to 2048, for example -DVL_BITS=2048.")
  endif()
endforeach()
if(QUERN_VECTOR_LENGTHS AND NOT VL_BITS IN_LIST QUERN_VECTOR_LENGTHS)
  message(FATAL_ERROR "QUERN_VECTOR_LENGTHS has no ${VL_BITS}, which `quern run` takes unless it is told: add it, or "
                      "choose another by -DVL_BITS=...")
endif()
set(quern_vector_lengths ${VL_BITS} ${QUERN_VECTOR_LENGTHS})
list(REMOVE_DUPLICATES quern_vector_lengths)

# `quern run` takes each host that it finds: one of a length that is built no more would be out of date.
file(GLOB built RELATIVE ${PROJECT_BINARY_DIR}/lib ${PROJECT_BINARY_DIR}/lib/libquern_*)
foreach(library IN LISTS built)
  if(library MATCHES "_([0-9]+)\\.so$" AND NOT CMAKE_MATCH_1 IN_LIST quern_vector_lengths)
    file(REMOVE ${PROJECT_BINARY_DIR}/lib/${library})
  endif()
endforeach()

# quern_length_suffix(VARIABLE BITS): what the names of targets of a vector length end in.
function(quern_length_suffix variable bits)
  set(suffix _${bits})
  if(bits EQUAL "$CACHE{VL_BITS}")
    set(suffix "")
  endif()
  set(${variable} "${suffix}" PARENT_SCOPE)
endfunction()
