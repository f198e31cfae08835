# Everything that comes from the distribution. The package names are in tools/packages.

find_package(PkgConfig REQUIRED)
find_package(Boost 1.81 CONFIG REQUIRED COMPONENTS json url)
find_package(OpenSSL REQUIRED)
find_package(Threads REQUIRED)

pkg_check_modules(GTKMM REQUIRED IMPORTED_TARGET gtkmm-4.0>=4.8)
pkg_check_modules(WEBKIT REQUIRED IMPORTED_TARGET webkitgtk-6.0)
pkg_check_modules(SOUP REQUIRED IMPORTED_TARGET libsoup-3.0)
pkg_check_modules(XML REQUIRED libxml-2.0)
pkg_check_modules(PULSE REQUIRED IMPORTED_TARGET libpulse)
pkg_check_modules(WAYLAND REQUIRED IMPORTED_TARGET wayland-client)
pkg_check_modules(X11 REQUIRED IMPORTED_TARGET x11)
pkg_check_modules(PORTAL REQUIRED IMPORTED_TARGET libportal)
find_program(GLIB_COMPILE_RESOURCES glib-compile-resources REQUIRED)

# The soundboard's own.
if(NOT QUORBEL_CLIENT_ALONE)
  pkg_check_modules(FFMPEG REQUIRED IMPORTED_TARGET libavformat libavcodec libavutil libswresample)
endif()

# load_on_demand(TARGET PREFIX LIBRARY...): TARGET gets the headers that pkg-config found under PREFIX and,
# as LIBRARY_FILE, the name by which the dynamic linker knows each library. The libraries themselves are
# not linked: see platform/base/Library.h.
function(load_on_demand target prefix)
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${${prefix}_INCLUDE_DIRS})
  foreach(library IN LISTS ARGN)
    find_library(found_${library} ${library} HINTS ${${prefix}_LIBRARY_DIRS} REQUIRED)
    execute_process(COMMAND ${CMAKE_OBJDUMP} -p ${found_${library}} OUTPUT_VARIABLE header
      COMMAND_ERROR_IS_FATAL ANY)
    if(NOT header MATCHES "SONAME +([^ \n]+)")
      message(FATAL_ERROR "${found_${library}} does not tell its name")
    endif()
    string(MAKE_C_IDENTIFIER "${library}_FILE" definition)
    string(TOUPPER ${definition} definition)
    target_compile_definitions(${target} INTERFACE ${definition}="${CMAKE_MATCH_1}")
  endforeach()
endfunction()
load_on_demand(webkit_on_demand WEBKIT webkitgtk-6.0)
if(NOT QUORBEL_CLIENT_ALONE)
  load_on_demand(ffmpeg_on_demand FFMPEG avformat swresample)
endif()
