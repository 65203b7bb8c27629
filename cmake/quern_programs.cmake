# quern_program(NAME SOURCE): a C program of the kind that quern runs, compiled for SVE from plain loops. Its loops must
# come out as the compiler vectorises them at its usual level, whatever the build type.
function(quern_program name source)
  add_executable(${name} ${source})
  target_compile_definitions(${name} PRIVATE _GNU_SOURCE)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/include)
  target_compile_options(${name} PRIVATE -O3 -march=armv8-a+sve -Wall -Wextra -Werror -Wa,--fatal-warnings)
  target_link_libraries(${name} PRIVATE Threads::Threads)
endfunction()
