# Finds what the build needs from Debian's packages (cmake/debian-packages.txt), and installs a
# missing package itself when it can: as root, or through sudo without a password. Where it
# can't, it stops at once with one message that names the command to run.
# TIVLIB_INSTALL_PACKAGES=OFF leaves the machine alone.
option(TIVLIB_INSTALL_PACKAGES "Install missing Debian build packages at configure time" ON)

# Runs apt-get for the packages; true if it could.
function(tiv_apt_install out)
  set(${out} FALSE PARENT_SCOPE)
  if(NOT TIVLIB_INSTALL_PACKAGES)
    return()
  endif()
  find_program(TIV_APT_GET apt-get)
  if(NOT TIV_APT_GET)
    return()
  endif()
  execute_process(COMMAND id -u OUTPUT_VARIABLE uid OUTPUT_STRIP_TRAILING_WHITESPACE)
  set(prefix)
  if(NOT uid STREQUAL "0")
    execute_process(COMMAND sudo -n true RESULT_VARIABLE no_sudo OUTPUT_QUIET ERROR_QUIET)
    if(NOT no_sudo EQUAL 0)
      return()
    endif()
    set(prefix sudo -n)
  endif()
  message(STATUS "Installing the Debian packages ${ARGN}")
  execute_process(COMMAND ${prefix} env DEBIAN_FRONTEND=noninteractive apt-get update -qq
                  OUTPUT_QUIET)
  execute_process(COMMAND ${prefix} env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq ${ARGN}
                  RESULT_VARIABLE rc OUTPUT_QUIET)
  if(rc EQUAL 0)
    set(${out} TRUE PARENT_SCOPE)
  endif()
endfunction()

# tiv_find_header(VAR HEADER PACKAGE): find_path for HEADER, installing PACKAGE if it is
# missing; stops with the command to run if it stays missing.
function(tiv_find_header var header package)
  find_path(${var} ${header})
  if(NOT ${var})
    tiv_apt_install(installed ${package})
    unset(${var} CACHE)
    find_path(${var} ${header})
  endif()
  if(NOT ${var})
    message(FATAL_ERROR "${header} is missing: it comes with the Debian package ${package}.\n"
                        "Install it with:  sudo apt-get install ${package}")
  endif()
endfunction()

# tiv_find_package(NAME PACKAGE...): find_package(NAME), installing the packages if it is
# missing; stops with the command to run if it stays missing.
macro(tiv_find_package name)
  find_package(${name} QUIET)
  if(NOT ${name}_FOUND)
    tiv_apt_install(installed ${ARGN})
    find_package(${name} QUIET)
  endif()
  if(NOT ${name}_FOUND)
    string(REPLACE ";" " " _tiv_pkgs "${ARGN}")
    message(FATAL_ERROR "${name} is missing: it comes with the Debian package(s) ${_tiv_pkgs}.\n"
                        "Install with:  sudo apt-get install ${_tiv_pkgs}")
  endif()
endmacro()
