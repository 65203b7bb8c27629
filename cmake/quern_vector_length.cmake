# VL_BITS: the one vector length of the build, and the suffix of the hosts' library names.
set(VL_BITS 2048 CACHE STRING "Vector length in bits: 128, 256, 512, 1024 or 2048")
set(quern_vector_lengths 128 256 512 1024 2048)
string(JOIN ", " quern_vector_length_list ${quern_vector_lengths})
set_property(CACHE VL_BITS PROPERTY STRINGS ${quern_vector_lengths})
if(NOT VL_BITS IN_LIST quern_vector_lengths)
  message(FATAL_ERROR "VL_BITS is '${VL_BITS}'; it must be a power of two from 128 to 2048. "
                      "Give one of ${quern_vector_length_list}, for example -DVL_BITS=2048.")
endif()
