# One set of options for every target of ours: warnings, sanitizers, the compiler cache.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # The checkout's folder is kept out of the cache's key, so that checkouts share it.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}
      CCACHE_NOHASHDIR=1 ${CCACHE_PROGRAM})
endif()

add_library(quorbel_options INTERFACE)
target_compile_options(quorbel_options INTERFACE -Wall -Wextra -Wpedantic)
target_include_directories(quorbel_options INTERFACE ${CMAKE_SOURCE_DIR})

if(QUORBEL_SANITIZE)
  target_compile_options(quorbel_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer
    # Without the optimiser the tests compile in half the time; fuzzing needs its speed.
    $<$<BOOL:${QUORBEL_FUZZ}>:-O1>
    # What the sanitizers add to a variant's branches makes the compiler see reads that never happen.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(quorbel_options INTERFACE -fsanitize=address,undefined)
endif()
if(QUORBEL_FUZZ)
  target_compile_options(quorbel_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
