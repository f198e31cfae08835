# One set of options for every target: warnings, hardening, sanitizers, the compiler cache.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # The checkout's folder is kept out of the cache's key, so that checkouts share it.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}
      CCACHE_NOHASHDIR=1 ${CCACHE_PROGRAM})
endif()

# Without a build type nothing would be optimised, nor the library's functions checked.
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "How to build" FORCE)
endif()

add_library(quorbel_options INTERFACE)
target_compile_options(quorbel_options INTERFACE -Wall -Wextra -Wpedantic)
# What newer toolkits deprecate often has no successor in the oldest one that will do.
target_compile_definitions(quorbel_options INTERFACE GDK_VERSION_MIN_REQUIRED=GDK_VERSION_4_8)
target_include_directories(quorbel_options INTERFACE ${PROJECT_SOURCE_DIR})

# What is left of a memory fault ends the program instead of serving an attacker. The sanitizers have
# checks of their own in the stack's place.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported()
add_compile_definitions(_GLIBCXX_ASSERTIONS $<$<CONFIG:Debug>:VALDREN_THREAD_CHECKS>)
add_link_options(-Wl,-z,relro,-z,now)
if(NOT QUORBEL_SANITIZE)
  foreach(flag stack-protector-strong stack-clash-protection cf-protection)
    # Not every processor has each.
    string(MAKE_C_IDENTIFIER HAVE_${flag} have)
    check_cxx_compiler_flag(-f${flag} ${have})
    if(${have})
      add_compile_options(-f${flag})
    endif()
  endforeach()
  # Works in optimised code alone.
  add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>")
endif()

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
