# What the toolchain files have in common: Debian's cross compilers, and the libraries of the other architecture.
function(at_debian_name variable name)
  execute_process(COMMAND dpkg-architecture -a ${AT_ARCHITECTURE} -f -q${name} OUTPUT_VARIABLE value
    OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
  set(${variable} "${value}" PARENT_SCOPE)
endfunction()

at_debian_name(compiler DEB_HOST_GNU_TYPE)
at_debian_name(CMAKE_LIBRARY_ARCHITECTURE DEB_HOST_MULTIARCH)
at_debian_name(CMAKE_SYSTEM_PROCESSOR DEB_HOST_GNU_CPU)
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${compiler}-gcc)
set(CMAKE_CXX_COMPILER ${compiler}-g++)
set(ENV{PKG_CONFIG_LIBDIR} "/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig:/usr/share/pkgconfig")
