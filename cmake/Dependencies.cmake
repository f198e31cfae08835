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
