# The shared library and its twin for tests, both assembled from the subsystems that stand.

set(kx_subsystems)
foreach(subsystem IN ITEMS scene face domain network measurement geo plans interaction labels resources)
    if(TARGET view3d_${subsystem})
        list(APPEND kx_subsystems view3d_${subsystem})
    endif()
endforeach()

if(NOT TARGET KxView3d)
    add_library(KxView3d SHARED)
    target_include_directories(KxView3d PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
    target_link_libraries(KxView3d
        PUBLIC view3d_boundary Qt5::Qml Qt5::Quick Qt5::3DCore Qt5::3DRender Qt5::3DInput Qt5::3DLogic Qt5::3DExtras
        PRIVATE ${kx_subsystems} KxDomain)
    set_target_properties(KxView3d PROPERTIES LINKER_LANGUAGE CXX
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
endif()

# Tests that reach classes without an export link a subsystem's objects and take what those need from this archive.
# Never in one program with KxView3d: each would have singletons of its own.
add_library(view3d_rest STATIC EXCLUDE_FROM_ALL)
target_link_libraries(view3d_rest
    PUBLIC view3d_boundary Qt5::Qml Qt5::Quick Qt5::3DCore Qt5::3DRender Qt5::3DInput Qt5::3DLogic Qt5::3DExtras
    PRIVATE ${kx_subsystems} KxDomain)
set_target_properties(view3d_rest PROPERTIES LINKER_LANGUAGE CXX)
