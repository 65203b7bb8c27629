# quern_add_revision(TARGET): quern_revision.h for its sources, with the revision of the source as QUERN_REVISION. It is
# asked for at each build, and the header is written only when it has changed. Run as a script (-P), this file does that.
if(CMAKE_SCRIPT_MODE_FILE)
  execute_process(COMMAND git -C ${SOURCE} describe --always --abbrev=12 --dirty=+ --match ""
                  OUTPUT_VARIABLE revision ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT revision)
    set(revision unknown)
  endif()
  file(CONFIGURE OUTPUT ${HEADER} CONTENT "#define QUERN_REVISION \"${revision}\"\n")
  return()
endif()

function(quern_add_revision target)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/revision)
  add_custom_target(quern_revision BYPRODUCTS ${folder}/quern_revision.h
    COMMAND ${CMAKE_COMMAND} -DSOURCE=${PROJECT_SOURCE_DIR} -DHEADER=${folder}/quern_revision.h
            -P ${PROJECT_SOURCE_DIR}/cmake/quern_revision.cmake)
  add_dependencies(${target} quern_revision)
  target_include_directories(${target} PRIVATE ${folder})
endfunction()
