# pack_texts(TARGET NAME FOLDER PREFIX): compiles all files of the current list's FOLDER into TARGET, as a
# resource that NAME_get_resource() gives.
function(pack_texts target name folder prefix)
  file(GLOB texts RELATIVE ${CMAKE_CURRENT_SOURCE_DIR}/${folder} CONFIGURE_DEPENDS ${folder}/*)
  list(TRANSFORM texts REPLACE "^(.+)$" "    <file>\\1</file>\n" OUTPUT_VARIABLE entries)
  string(JOIN "" entries ${entries})
  set(manifest ${CMAKE_CURRENT_BINARY_DIR}/${name}.gresource.xml)
  file(CONFIGURE OUTPUT ${manifest} @ONLY CONTENT "<?xml version=\"1.0\" encoding=\"UTF-8\"?>
<gresources>
  <gresource prefix=\"${prefix}\">
@entries@  </gresource>
</gresources>
")
  list(TRANSFORM texts PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.c)
  add_custom_command(OUTPUT ${source}
    COMMAND ${GLIB_COMPILE_RESOURCES} --generate-source --internal --c-name ${name}
            --sourcedir=${CMAKE_CURRENT_SOURCE_DIR}/${folder} --target=${source} ${manifest}
    DEPENDS ${manifest} ${texts} VERBATIM)
  target_sources(${target} PRIVATE ${source})
  # Our warnings do not apply to generated code.
  set_source_files_properties(${source} PROPERTIES COMPILE_OPTIONS -w)
endfunction()
