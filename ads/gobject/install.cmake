# The C interface of the client's shared library, and what other languages know it by. Headers lie in a
# folder of their own beside those of the C++ interface.
option(VALDREN_INTROSPECTION "Describe the C interface for other languages (needs g-ir-scanner)" ON)

set(c_headers ValdrenMacros.h ValdrenError.h ValdrenRequest.h ValdrenBanner.h ValdrenSetup.h)
set(c_folder ${PROJECT_BINARY_DIR}/include/valdren-gobject)
set(c_published "")
foreach(header IN ITEMS valdren.h ${c_headers})
  set(from ${CMAKE_CURRENT_SOURCE_DIR}/gobject/${header})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${from})
  file(READ ${from} text)
  string(REPLACE "#include \"ads/gobject/" "#include \"valdren-gobject/" text "${text}")
  string(REGEX REPLACE "#include \"(valdren-gobject/[^\"]+)\"" "#include <\\1>" text "${text}")
  file(CONFIGURE OUTPUT ${c_folder}/${header} CONTENT "${text}" @ONLY)
  list(APPEND c_published ${c_folder}/${header})
endforeach()
install(FILES ${c_published} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/valdren-gobject
  COMPONENT development)

file(GLOB c_sources CONFIGURE_DEPENDS gobject/*.cpp)
target_sources(valdren_shared PRIVATE ${c_sources})

file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/valdren-gobject-1.pc @ONLY CONTENT
"prefix=\${pcfiledir}/@up@
Name: valdren-gobject-1
Description: Ad banners in GTK applications, for C
Version: @PROJECT_VERSION@
Requires: gtk4
Cflags: -I\${prefix}/@CMAKE_INSTALL_INCLUDEDIR@
Libs: -L\${prefix}/@CMAKE_INSTALL_LIBDIR@ -lvaldren-ads
")
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/valdren-gobject-1.pc DESTINATION ${pkgconfig_folder}
  COMPONENT development)

find_program(G_IR_SCANNER g-ir-scanner)
find_program(G_IR_COMPILER g-ir-compiler)
find_program(VAPIGEN vapigen)
find_program(GI_DOCGEN gi-docgen)
find_program(DOXYGEN doxygen)
# The scanner runs the library, which a sanitizer does not allow in a foreign program.
if(NOT VALDREN_INTROSPECTION OR NOT G_IR_SCANNER OR NOT G_IR_COMPILER OR QUORBEL_SANITIZE)
  return()
endif()

set(gir ${CMAKE_CURRENT_BINARY_DIR}/Valdren-1.gir)
set(typelib ${CMAKE_CURRENT_BINARY_DIR}/Valdren-1.typelib)
add_custom_command(OUTPUT ${gir}
  COMMAND ${CMAKE_COMMAND} -E env --unset=CFLAGS --unset=CXXFLAGS ${G_IR_SCANNER} --quiet --warn-all
    --namespace=Valdren --nsversion=1 --identifier-prefix=Valdren --symbol-prefix=valdren
    --include=Gtk-4.0 --pkg=gtk4 --pkg-export=valdren-gobject-1
    --c-include=valdren-gobject/valdren.h --no-libtool
    --library=valdren-ads --library-path=${CMAKE_CURRENT_BINARY_DIR}
    -L${CMAKE_CURRENT_BINARY_DIR} -I${PROJECT_BINARY_DIR}/include
    --output=${gir} ${c_published}
  DEPENDS valdren_shared ${c_published} COMMENT "Describing the C interface" VERBATIM)
add_custom_command(OUTPUT ${typelib}
  COMMAND ${G_IR_COMPILER} --output=${typelib} ${gir} DEPENDS ${gir} VERBATIM)
install(FILES ${gir} DESTINATION ${CMAKE_INSTALL_DATADIR}/gir-1.0 COMPONENT development)
install(FILES ${typelib} DESTINATION ${CMAKE_INSTALL_LIBDIR}/girepository-1.0
  COMPONENT development)
set(described ${gir} ${typelib})

if(VAPIGEN)
  set(vapi ${CMAKE_CURRENT_BINARY_DIR}/valdren-gobject-1.vapi)
  set(vapi_needs ${CMAKE_CURRENT_BINARY_DIR}/valdren-gobject-1.deps)
  file(WRITE ${vapi_needs} "gtk4\n")
  add_custom_command(OUTPUT ${vapi}
    COMMAND ${VAPIGEN} --quiet --library=valdren-gobject-1 --pkg=gtk4
      --directory=${CMAKE_CURRENT_BINARY_DIR} ${gir}
    DEPENDS ${gir} VERBATIM)
  list(APPEND described ${vapi})
  install(FILES ${vapi} ${vapi_needs} DESTINATION ${CMAKE_INSTALL_DATADIR}/vala/vapi
    COMPONENT development)
endif()
add_custom_target(valdren_introspection ALL DEPENDS ${described})

# The pages of both interfaces: ninja docs.
if(GI_DOCGEN AND DOXYGEN)
  set(pages ${PROJECT_BINARY_DIR}/api)
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/Doxyfile @ONLY CONTENT
"PROJECT_NAME = valdren-ads
PROJECT_NUMBER = @PROJECT_VERSION@
INPUT = @public_folder@
RECURSIVE = YES
STRIP_FROM_PATH = @PROJECT_BINARY_DIR@/include
OUTPUT_DIRECTORY = @pages@
HTML_OUTPUT = cpp
GENERATE_LATEX = NO
HAVE_DOT = NO
QUIET = YES
WARN_IF_UNDOCUMENTED = NO
MACRO_EXPANSION = YES
PREDEFINED = VALDREN_EXPORT=
")
  file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/docgen.toml
    "[library]\nname = \"Valdren\"\nversion = \"${PROJECT_VERSION}\"\nnamespace = \"Valdren\"\n")
  add_custom_target(docs
    COMMAND ${CMAKE_COMMAND} -E make_directory ${pages}
    COMMAND ${GI_DOCGEN} generate --quiet --no-namespace-dir --output-dir=${pages}/c
      --config=${CMAKE_CURRENT_BINARY_DIR}/docgen.toml ${gir}
    COMMAND ${DOXYGEN} ${CMAKE_CURRENT_BINARY_DIR}/Doxyfile
    DEPENDS ${gir} VERBATIM)
endif()
