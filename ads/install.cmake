# The client as one shared library for applications that are built elsewhere: find_package(Valdren),
# then link Valdren::ads. What it is made of stays inside it.
include(CMakePackageConfigHelpers)

add_library(valdren_shared SHARED valdren.cpp)
add_library(Valdren::ads ALIAS valdren_shared)
set_target_properties(valdren_shared PROPERTIES
  OUTPUT_NAME valdren-ads EXPORT_NAME ads VERSION ${PROJECT_VERSION} SOVERSION 1)
target_compile_definitions(valdren_shared PRIVATE VALDREN_VERSION="${PROJECT_VERSION}")
target_compile_features(valdren_shared PUBLIC cxx_std_20)
target_include_directories(valdren_shared
  PRIVATE ${CMAKE_SOURCE_DIR}
  INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/valdren>)

get_target_property(parts valdren_ads INTERFACE_LINK_LIBRARIES)
list(TRANSFORM QUORBEL_PLATFORM_ROOMS PREPEND platform_ OUTPUT_VARIABLE rooms)
foreach(part IN LISTS parts rooms)
  target_sources(valdren_shared PRIVATE $<TARGET_OBJECTS:${part}>)
endforeach()
target_link_libraries(valdren_shared PRIVATE quorbel_options ${QUORBEL_PLATFORM_NEEDS})
target_link_options(valdren_shared PRIVATE -Wl,--no-undefined)

install(TARGETS valdren_shared EXPORT ValdrenTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(FILES valdren.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/valdren)
install(FILES api/VADBannerView.h api/VADBannerViewDelegate.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/valdren/ads/api)
install(FILES request/VADConfiguration.h request/VADRequest.h request/VADRequestError.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/valdren/ads/request)
install(FILES support/VADErrorCode.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/valdren/ads/support)
foreach(header application/Host base/Date base/MainThread base/URL base/Value base/WeakPtr
    storage/Bundle ui/Geometry ui/View ui/ViewController)
  cmake_path(GET header PARENT_PATH room)
  install(FILES ${CMAKE_SOURCE_DIR}/platform/${header}.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/valdren/platform/${room})
endforeach()

set(config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Valdren)
install(EXPORT ValdrenTargets NAMESPACE Valdren:: DESTINATION ${config_folder})
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/ValdrenConfig.cmake
  "include(\${CMAKE_CURRENT_LIST_DIR}/ValdrenTargets.cmake)\n")
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/ValdrenConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ValdrenConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/ValdrenConfigVersion.cmake DESTINATION ${config_folder})
