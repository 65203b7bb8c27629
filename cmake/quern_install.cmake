# What `cmake --install` and `cpack` put where, below a prefix that may be moved as a whole:
#   bin/quern                        the command, which finds the hosts from its own place
#   lib/quern/                       the hosts and libquern_utils.so, for AArch64 whatever this machine is
#   include/quern/                   roi.h for the programs to trace
#   include/quern/sve/, lib/, lib/cmake/quern/, lib/pkgconfig/
#                                    sve_core and libquern_utils.a, for programs that embed the emulator; sve_core_512
#                                    is that of another vector length
#   share/quern/python/              reads traces in Python
#   share/                           manual pages, completion, documents, examples
include(CMakePackageConfigHelpers)
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)  # what is installed suffices; the tests need not be built

set(private_libraries lib/quern)
if(TARGET quern_trap)
  set(hosts quern_utils)
  foreach(length IN LISTS quern_vector_lengths)
    quern_length_suffix(suffix ${length})
    list(APPEND hosts quern_trap${suffix})
    if(TARGET quern_client${suffix})
      list(APPEND hosts quern_client${suffix})
    endif()
  endforeach()
  install(TARGETS ${hosts} LIBRARY DESTINATION ${private_libraries})
else()
  set(QUERN_AARCH64_BUILD ${PROJECT_SOURCE_DIR}/build/aarch64 CACHE PATH
      "Build folder for AArch64 whose hosts, of all vector lengths, are installed with this command")
  foreach(library libquern_trap_${VL_BITS}.so libquern_utils.so)
    install(CODE "if(NOT EXISTS \"${QUERN_AARCH64_BUILD}/lib/${library}\")
      message(WARNING \"${library} for AArch64 is left out, so that quern run can't work: build the preset aarch64, or \"
                      \"give -DQUERN_AARCH64_BUILD=FOLDER\")
    endif()")
  endforeach()
  install(DIRECTORY ${QUERN_AARCH64_BUILD}/lib/ DESTINATION ${private_libraries} OPTIONAL
          FILES_MATCHING PATTERN libquern_*.so)
endif()

install(TARGETS quern RUNTIME DESTINATION bin)
set(manual ${PROJECT_BINARY_DIR}/manual)
install(DIRECTORY ${manual}/ DESTINATION share/man/man1 FILES_MATCHING PATTERN *.1)
install(DIRECTORY ${manual}/ DESTINATION share/man/man5 FILES_MATCHING PATTERN *.5)
install(FILES ${manual}/quern DESTINATION share/bash-completion/completions)
install(FILES ${manual}/_quern DESTINATION share/zsh/vendor-completions)
install(FILES README.md CHANGELOG.md DESTINATION share/doc/quern)
install(FILES LICENSE DESTINATION share/doc/quern RENAME copyright)
# LZ4's code is in the command and the libraries, and its licence wants to be told.
find_file(QUERN_LZ4_COPYRIGHT copyright PATHS /usr/share/doc/liblz4-dev NO_DEFAULT_PATH)
mark_as_advanced(QUERN_LZ4_COPYRIGHT)
if(QUERN_LZ4_COPYRIGHT)
  install(FILES ${QUERN_LZ4_COPYRIGHT} DESTINATION share/doc/quern RENAME copyright.lz4)
endif()
install(DIRECTORY docs/ DESTINATION share/doc/quern/docs FILES_MATCHING PATTERN *.md PATTERN *.svg PATTERN manual EXCLUDE)
install(DIRECTORY examples DESTINATION share/doc/quern)

install(DIRECTORY tools/python/ DESTINATION share/quern/python FILES_MATCHING PATTERN *.py PATTERN __pycache__ EXCLUDE)

install(DIRECTORY include/quern DESTINATION include)

# For programs that embed the emulator.
install(DIRECTORY sve DESTINATION include/quern FILES_MATCHING PATTERN *.h PATTERN *.def
        PATTERN client EXCLUDE PATTERN trap EXCLUDE)
set_target_properties(quern_utils_static PROPERTIES EXPORT_NAME quern_utils)
foreach(VL_BITS IN LISTS quern_vector_lengths)
  quern_length_suffix(suffix ${VL_BITS})
  target_compile_definitions(sve_core${suffix} INTERFACE $<INSTALL_INTERFACE:QUERN_VL_BITS=${VL_BITS}>)
  list(APPEND archives sve_core${suffix})
  configure_file(cmake/quern.pc.in ${PROJECT_BINARY_DIR}/quern${suffix}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/quern${suffix}.pc DESTINATION lib/pkgconfig)
endforeach()
list(APPEND archives quern_utils_static)
foreach(target IN LISTS archives)
  target_include_directories(${target} INTERFACE $<INSTALL_INTERFACE:include/quern>)
  target_compile_features(${target} INTERFACE cxx_std_20)
endforeach()
install(TARGETS ${archives} EXPORT quern ARCHIVE DESTINATION lib)
install(EXPORT quern NAMESPACE quern:: FILE quernConfig.cmake DESTINATION lib/cmake/quern)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/quernConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/quernConfigVersion.cmake DESTINATION lib/cmake/quern)

# Packages.
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_VENDOR "quern")
set(CPACK_PACKAGE_CONTACT "the maintainers of quern")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "runs programs compiled for SVE on processors without it")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_FILE_NAME quern-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
# The packager would take this machine's architecture for a cross build too. Nor can it find out the needs of the hosts,
# which are for AArch64 everywhere; the command itself needs the C library alone.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= 2.35)")
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
  set(recommended "")
else()
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE amd64)
  string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", qemu-user | qemu-user-static")
  set(recommended libc6-arm64-cross)
endif()
if(HAS_LIBDW_HEADER)
  list(PREPEND recommended libdw1)  # else the command has no use for it
endif()
list(JOIN recommended ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "python3-numpy, python3-lz4")  # for the reader in Python
include(CPack)
