# Installs the libraries, the public headers, a CMake package (TolvexMenuTemplate, targets
# Tolvex::MenuTemplate, Tolvex::Profile, Tolvex::MenuBmp, Tolvex::MenuMask) and a pkg-config file.
include(CMakePackageConfigHelpers)

set(TOLVEX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/TolvexMenuTemplate)

install(TARGETS TolvexMenuTemplate TolvexProfile Tolvex_MenuBmp Tolvex_MenuMask
  EXPORT TolvexMenuTemplateTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

# A MinGW build's DLLs and programs load the C++ runtime's DLLs, which Windows looks for beside
# them first.
if(WIN32 AND TOLVEX_MINGW_RUNTIME_DLLS)
  install(FILES ${TOLVEX_MINGW_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(FILES
  include/tolvex/Export.h include/tolvex/WinTypes.h include/tolvex/CString.h
  include/tolvex/Profile.h include/tolvex/MenuTitle.h include/tolvex/MenuButton.h
  include/tolvex/MenuTemplate.h include/tolvex/MenuBmp.h include/tolvex/MenuMask.h
  include/tolvex/TemplateEdit.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tolvex)

install(EXPORT TolvexMenuTemplateTargets NAMESPACE Tolvex:: DESTINATION ${TOLVEX_CMAKE_DIR})
configure_package_config_file(cmake/TolvexMenuTemplateConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/TolvexMenuTemplateConfig.cmake INSTALL_DESTINATION ${TOLVEX_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/TolvexMenuTemplateConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/TolvexMenuTemplateConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/TolvexMenuTemplateConfigVersion.cmake
        DESTINATION ${TOLVEX_CMAKE_DIR})

# The pkg-config file finds the prefix from its own folder, so that it stays right when the
# tree is installed with `cmake --install --prefix` or moved; absolute install dirs stay as given.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(TOLVEX_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH TOLVEX_PC_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
  string(REGEX REPLACE "/$" "" TOLVEX_PC_PREFIX "\${pcfiledir}/${TOLVEX_PC_PREFIX}")
endif()
foreach(dir LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${dir}}")
    set(TOLVEX_PC_${dir} "${CMAKE_INSTALL_${dir}}")
  else()
    set(TOLVEX_PC_${dir} "\${prefix}/${CMAKE_INSTALL_${dir}}")
  endif()
endforeach()
configure_file(cmake/tolvex-menutemplate.pc.in ${CMAKE_CURRENT_BINARY_DIR}/tolvex-menutemplate.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/tolvex-menutemplate.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
