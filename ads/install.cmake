# The client as one shared library for applications that are built elsewhere. What it is made of stays
# inside it. docs/embedding.md says how it is found.
include(CMakePackageConfigHelpers)

# Everything under one folder of its own, where no header of an application can be taken for one of ours.
set(public_headers
  ads/api/VADBannerView.h ads/api/VADBannerViewDelegate.h ads/request/VADConfiguration.h
  ads/request/VADRequest.h ads/request/VADRequestError.h ads/support/VADErrorCode.h
  platform/application/Host.h platform/base/Date.h platform/base/Export.h platform/base/MainThread.h
  platform/base/Seconds.h platform/base/URL.h platform/base/Value.h platform/base/WeakPtr.h
  platform/storage/Bundle.h platform/ui/Geometry.h platform/ui/View.h platform/ui/ViewController.h)
set(public_folder ${PROJECT_BINARY_DIR}/include/valdren)

# publish_header(FROM TO): a copy that includes the others as <valdren/...>.
function(publish_header from to)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${from})
  file(READ ${PROJECT_SOURCE_DIR}/${from} text)
  string(REGEX MATCHALL "#include \"[^\"]+" included "${text}")
  foreach(header IN LISTS included)
    string(SUBSTRING "${header}" 10 -1 header)
    if(NOT header IN_LIST public_headers)
      message(FATAL_ERROR "${from} includes ${header}, which is not among the public headers.")
    endif()
  endforeach()
  string(REGEX REPLACE "#include \"([^\"]+)\"" "#include <valdren/\\1>" text "${text}")
  file(CONFIGURE OUTPUT ${public_folder}/${to} CONTENT "${text}" @ONLY)
  cmake_path(GET to PARENT_PATH folder)
  install(FILES ${public_folder}/${to} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/valdren/${folder}
    COMPONENT development)
endfunction()
publish_header(ads/valdren.h valdren.h)
foreach(header IN LISTS public_headers)
  publish_header(${header} ${header})
endforeach()

add_library(valdren_shared SHARED valdren.cpp)
add_library(Valdren::ads ALIAS valdren_shared)
set_target_properties(valdren_shared PROPERTIES
  OUTPUT_NAME valdren-ads EXPORT_NAME ads VERSION ${PROJECT_VERSION} SOVERSION 1)
target_compile_definitions(valdren_shared PRIVATE VALDREN_VERSION="${PROJECT_VERSION}")
target_compile_features(valdren_shared PUBLIC cxx_std_20)
target_include_directories(valdren_shared
  PRIVATE ${PROJECT_SOURCE_DIR}
  INTERFACE $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
            $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

get_target_property(parts valdren_ads INTERFACE_LINK_LIBRARIES)
list(TRANSFORM QUORBEL_PLATFORM_ROOMS PREPEND platform_ OUTPUT_VARIABLE rooms)
foreach(part IN LISTS parts rooms)
  target_sources(valdren_shared PRIVATE $<TARGET_OBJECTS:${part}>)
endforeach()
target_link_libraries(valdren_shared PRIVATE quorbel_options ${QUORBEL_PLATFORM_NEEDS})
target_link_options(valdren_shared PRIVATE -Wl,--no-undefined
  -Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/valdren.map)
set_target_properties(valdren_shared PROPERTIES
  LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/valdren.map)

install(TARGETS valdren_shared EXPORT ValdrenTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

set(config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Valdren)
install(EXPORT ValdrenTargets NAMESPACE Valdren:: DESTINATION ${config_folder} COMPONENT development)
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/ValdrenConfig.cmake
  "include(\${CMAKE_CURRENT_LIST_DIR}/ValdrenTargets.cmake)\n")
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/ValdrenConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ValdrenConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/ValdrenConfigVersion.cmake DESTINATION ${config_folder}
  COMPONENT development)

# The prefix is where the file lies, so that the installed tree can be moved.
set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH up /${pkgconfig_folder} /)
file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/valdren-ads.pc @ONLY CONTENT
"prefix=\${pcfiledir}/@up@
Name: valdren-ads
Description: Ad banners in GTK applications
Version: @PROJECT_VERSION@
Cflags: -I\${prefix}/@CMAKE_INSTALL_INCLUDEDIR@
Libs: -L\${prefix}/@CMAKE_INSTALL_LIBDIR@ -lvaldren-ads
")
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/valdren-ads.pc DESTINATION ${pkgconfig_folder}
  COMPONENT development)
include(gobject/install.cmake)
