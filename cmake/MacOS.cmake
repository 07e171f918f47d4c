# What is particular to macOS: where the programs go, what they are signed with, and the maker's framework.
if(NOT APPLE)
  return()
endif()

# The printing system runs the program that a PPD names with *APAutoSetupTool; printer drivers have a folder of their own.
if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT)
  set(CMAKE_INSTALL_PREFIX /Library/Printers/Vorantis CACHE PATH "The folder of the printer driver" FORCE)
endif()
set(CMAKE_INSTALL_BINDIR Utilities CACHE STRING "Where the programs go in the folder of the printer driver")

# Linked weakly: a program starts without the framework too. No symbol of it is used, only its classes, by name.
# Where the framework is not at hand, a text stub that names its place does: tests/macos/sdk has one.
find_library(QZVORANTISMODEL_FRAMEWORK QZVorantisModel REQUIRED PATHS /Library/Frameworks
  DOC "The maker's device-model framework, QZVorantisModel.framework")
get_filename_component(framework_folder "${QZVORANTISMODEL_FRAMEWORK}" DIRECTORY)
add_library(device_model_framework INTERFACE)
target_link_options(device_model_framework INTERFACE "-F${framework_folder}" "SHELL:-weak_framework QZVorantisModel")

# Signing is the packager's: with an identity, installed programs are signed for notarization.
set(AT_CODESIGN_IDENTITY "" CACHE STRING "The identity to sign the installed programs with; none: they are not signed")

# Signs an installed program. Installation components as in install().
function(at_sign_installed target component)
  if(AT_CODESIGN_IDENTITY)
    install(CODE "execute_process(COMMAND codesign --force --timestamp --options runtime --sign \"${AT_CODESIGN_IDENTITY}\"
      \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/$<TARGET_FILE_NAME:${target}>\"
      COMMAND_ERROR_IS_FATAL ANY)" COMPONENT ${component})
  endif()
endfunction()
