# One OBJECT library a subsystem; tests link what they test, the shared library is assembled from all of them.

# kx_subsystem(NAME SOURCES file... LINK target...)
function(kx_subsystem name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} OBJECT ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(${name}
        PUBLIC view3d_boundary Qt5::Qml Qt5::3DCore Qt5::3DRender Qt5::3DInput Qt5::3DLogic Qt5::3DExtras ${ARG_LINK}
        PRIVATE kx_compiler)
    target_compile_definitions(${name} PRIVATE KXVIEW3D_LIBRARY)
    set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    if(NOT KX_SANITIZE AND EXISTS ${PROJECT_SOURCE_DIR}/cmake/qt3d_pch.h)
        target_precompile_headers(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/qt3d_pch.h)
    endif()
endfunction()

# kx_for_sanitizer(TARGET): what a program of the tests takes along when a sanitizer is woven in.
function(kx_for_sanitizer name)
    if(KX_SANITIZE)
        target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/keep_libraries.cpp)
    endif()
    if(KX_SANITIZE MATCHES "thread")
        target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/tsan_qt.cpp)
    endif()
endfunction()

# kx_test(NAME SOURCES file... LINK target... [WINDOW] [THREADS])
# A test program. One that links a subsystem takes the rest of the view from view3d_rest as far as it needs it; one of the
# library's face links KxView3d instead. WINDOW marks one that renders: it runs on an X server; the others need none.
# THREADS marks one in which threads of ours meet: these are what ThreadSanitizer looks at (target kx_thread_tests).
function(kx_test name)
    cmake_parse_arguments(ARG "WINDOW;THREADS" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    set(rest)
    if(ARG_LINK MATCHES "view3d_")
        # Resources are no symbols, so the archive wouldn't give them: shaders and models come along.
        set(rest view3d_rest view3d_resources)
    endif()
    target_link_libraries(${name} PRIVATE ${ARG_LINK} ${rest} Qt5::Test kx_compiler)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE KX_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    add_test(NAME ${name} COMMAND ${name})
    set(environment "QT_LOGGING_RULES=qt.*.debug=false;QT3D_SCENE3D_STOP_RENDER_HIDDEN=1;QML_NO_TOUCH_COMPRESSION=1")
    if(ARG_WINDOW)
        list(APPEND environment "QT_QPA_PLATFORM=xcb" "LIBGL_ALWAYS_SOFTWARE=1")
        set_tests_properties(${name} PROPERTIES LABELS window)
    else()
        list(APPEND environment "QT_QPA_PLATFORM=offscreen")
    endif()
    if(ARG_THREADS)
        set_tests_properties(${name} PROPERTIES LABELS threads)
        add_dependencies(kx_thread_tests ${name})
    endif()
    if(KX_SANITIZE)
        kx_for_sanitizer(${name})
        list(APPEND environment
            "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0"
            "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/tsan.supp:ignore_noninstrumented_modules=1:halt_on_error=1"
            "ASAN_OPTIONS=detect_leaks=1" "UBSAN_OPTIONS=print_stacktrace=1")
    endif()
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${environment}" TIMEOUT 300)
endfunction()
