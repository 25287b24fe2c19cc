# The language, the warnings and the sanitizers, for every target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE
      RelWithDebInfo
      CACHE STRING "Kind of build" FORCE)
endif()

find_program(OCIFIP_CCACHE ccache)
mark_as_advanced(OCIFIP_CCACHE)
if(OCIFIP_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${OCIFIP_CCACHE})
endif()

add_library(ocifip_warnings INTERFACE)
target_compile_options(ocifip_warnings INTERFACE -Wall -Wextra -Wconversion -Wshadow -Werror)

if(OCIFIP_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

if(OCIFIP_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(OCIFIP_COVERAGE)
  add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
  # The run-time is no part of what a library exports.
  add_link_options(-fprofile-instr-generate
                   -Wl,--exclude-libs,libclang_rt.profile-${CMAKE_SYSTEM_PROCESSOR}.a)
endif()

# No path of the machine that builds gets into what is built.
add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
                    -ffile-prefix-map=${PROJECT_BINARY_DIR}=.)
