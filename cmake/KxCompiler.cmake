# Warnings, sanitizers and compiler cache for everything that is ours.

add_library(kx_compiler INTERFACE)
target_compile_options(kx_compiler INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused
    -Wdouble-promotion -Wformat=2 -Werror)
# -Wnull-dereference stays out: with optimisation this compiler reports it falsely in Qt's containers.
# Optimised, this compiler sees overflows in writes to Qt's containers that cannot happen.
target_compile_options(kx_compiler INTERFACE $<$<CONFIG:Release>:-Wno-stringop-overflow>)
target_compile_definitions(kx_compiler INTERFACE QT_NO_CAST_FROM_BYTEARRAY QT_DEPRECATED_WARNINGS)

set(KX_SANITIZE "" CACHE STRING "Sanitizers, as given to -fsanitize=")
if(KX_SANITIZE)
    add_compile_options(-fsanitize=${KX_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=${KX_SANITIZE})
    # The optimiser of this compiler reports false uninitialised reads once the checks are woven in.
    target_compile_options(kx_compiler INTERFACE -Wno-maybe-uninitialized)
endif()

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
endif()

find_program(LLD ld.lld)
if(LLD)
    add_link_options(-fuse-ld=lld)
endif()
