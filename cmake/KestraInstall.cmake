# The installable archive: both shared libraries (with import libraries on Windows), headers, CMake package files, hosts,
# samples. `cpack` in a build folder makes it; a user's project finds it with find_package(Kestra).
include(CMakePackageConfigHelpers)

set(header_folder include/kestra-${PROJECT_VERSION})
install(TARGETS Dorsel64 Kestra2007x64 EXPORT KestraTargets
    RUNTIME DESTINATION bin LIBRARY DESTINATION lib ARCHIVE DESTINATION lib INCLUDES DESTINATION ${header_folder})
foreach(host kestra_cli kestra_demo)
    if(TARGET ${host})
        install(TARGETS ${host} RUNTIME DESTINATION bin)
    endif()
endforeach()

set(system_side PATTERN linux EXCLUDE PATTERN windows EXCLUDE PATTERN window EXCLUDE PATTERN com EXCLUDE PATTERN embedded EXCLUDE)
if(WIN32)
    set(system_side PATTERN linux EXCLUDE PATTERN com EXCLUDE PATTERN embedded EXCLUDE)
endif()
install(DIRECTORY platform dorsel kestra DESTINATION ${header_folder} FILES_MATCHING PATTERN "*.h" ${system_side})
install(DIRECTORY samples DESTINATION share/kestra)
install(FILES README.md CHANGELOG.md DESTINATION share/doc/kestra)

install(EXPORT KestraTargets NAMESPACE Kestra:: DESTINATION lib/cmake/Kestra)
file(WRITE ${CMAKE_BINARY_DIR}/KestraConfig.cmake "include(\${CMAKE_CURRENT_LIST_DIR}/KestraTargets.cmake)\n")
write_basic_package_version_file(${CMAKE_BINARY_DIR}/KestraConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/KestraConfig.cmake ${CMAKE_BINARY_DIR}/KestraConfigVersion.cmake
    DESTINATION lib/cmake/Kestra)

set(CPACK_PACKAGE_NAME kestra)
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_SOURCE_DIR}/dist)
set(CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR};kestra;ALL;/")
set(CPACK_STRIP_FILES ON)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_SYSTEM_NAME windows-x86_64)
else()
    set(CPACK_GENERATOR TGZ)
    set(CPACK_SYSTEM_NAME linux-x86_64)
endif()
include(CPack)
