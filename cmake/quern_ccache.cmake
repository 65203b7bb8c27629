# Compiles through ccache where it is installed, unless another launcher was chosen (-DCMAKE_CXX_COMPILER_LAUNCHER=...).
find_program(QUERN_CCACHE ccache DOC "Compiler cache")
mark_as_advanced(QUERN_CCACHE)
if(QUERN_CCACHE)
  foreach(language C CXX)
    if(NOT DEFINED CMAKE_${language}_COMPILER_LAUNCHER)
      # Tests share a precompiled header, which ccache knows by its content only if these are overlooked.
      set(CMAKE_${language}_COMPILER_LAUNCHER
          ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${QUERN_CCACHE})
    endif()
  endforeach()
endif()
