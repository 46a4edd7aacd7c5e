# The shared library and its twin for tests, both assembled from the subsystems that stand. The library is installed with
# its headers and a CMake package:
#   find_package(KxView3d REQUIRED)
#   target_link_libraries(host PRIVATE KxView3d::KxView3d)
# KxDomain and KxDrawing stand behind domain/boundary/; they are linked by name, so that other libraries with the same
# headers can take their place. All are in the package, each installed by its own folder.

set(kx_subsystems)
foreach(subsystem IN ITEMS scene face domain network measurement geo plans interaction labels resources)
    if(TARGET view3d_${subsystem})
        list(APPEND kx_subsystems view3d_${subsystem})
    endif()
endforeach()

add_library(KxView3d SHARED)
target_include_directories(KxView3d PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/KxView3d>)
target_link_libraries(KxView3d
    PUBLIC view3d_boundary KxDomain KxDrawing Qt5::Qml Qt5::Quick Qt5::3DCore Qt5::3DRender Qt5::3DInput Qt5::3DLogic Qt5::3DExtras
    PRIVATE ${kx_subsystems})
set_target_properties(KxView3d PROPERTIES LINKER_LANGUAGE CXX
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH "$ORIGIN")
set_target_properties(KxDomain PROPERTIES INSTALL_RPATH "$ORIGIN")
if(NOT KX_SANITIZE)
    # What the view needs and does not name is an error here and not on the user's machine.
    target_link_options(KxView3d PRIVATE LINKER:-z,defs)
endif()

# Tests that reach classes without an export link a subsystem's objects and take what those need from this archive.
# Never in one program with KxView3d: each would have singletons of its own.
add_library(view3d_rest STATIC EXCLUDE_FROM_ALL)
target_link_libraries(view3d_rest
    PUBLIC view3d_boundary Qt5::Qml Qt5::Quick Qt5::3DCore Qt5::3DRender Qt5::3DInput Qt5::3DLogic Qt5::3DExtras
    PRIVATE ${kx_subsystems} KxDomain KxDrawing)
set_target_properties(view3d_rest PROPERTIES LINKER_LANGUAGE CXX)

include(CMakePackageConfigHelpers)
set(kx_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/KxView3d)
install(TARGETS KxView3d EXPORT KxView3dTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(folder IN ITEMS scene domain network measurement geo plans interaction labels)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/KxView3d/${folder}
        FILES_MATCHING PATTERN "*.h")
endforeach()
install(EXPORT KxView3dTargets NAMESPACE KxView3d:: DESTINATION ${kx_package_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/KxView3dConfig.cmake.in
    ${PROJECT_BINARY_DIR}/KxView3dConfig.cmake INSTALL_DESTINATION ${kx_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KxView3dConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KxView3dConfig.cmake ${PROJECT_BINARY_DIR}/KxView3dConfigVersion.cmake
    DESTINATION ${kx_package_dir})
