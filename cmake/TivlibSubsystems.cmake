# tiv_subsystem(NAME [DEPS sub...])
#
# Compiles src/NAME/*.cpp once into tivobj_NAME (the objects of the shipped libraries) and
# wraps them in the static library tiv_NAME, which links the static libraries of its DEPS.
# Tests link tiv_NAME, so a family's tests build without the families above it.
set(TIV_SUBSYSTEMS "")
set(_tiv_empty_source ${CMAKE_BINARY_DIR}/tiv_empty.cpp)
if(NOT EXISTS ${_tiv_empty_source})
  file(WRITE ${_tiv_empty_source} "// placeholder for a subsystem without sources\n")
endif()

function(tiv_subsystem name)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  file(GLOB srcs CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${name}/*.cpp)
  if(NOT srcs)
    set(srcs ${_tiv_empty_source})
  endif()
  add_library(tivobj_${name} OBJECT ${srcs})
  target_include_directories(tivobj_${name} PUBLIC ${PROJECT_SOURCE_DIR}/include ${PROJECT_BINARY_DIR}/include ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(tivobj_${name} PRIVATE tiv_options)
  add_library(tiv_${name} STATIC $<TARGET_OBJECTS:tivobj_${name}>)
  target_include_directories(tiv_${name} PUBLIC ${PROJECT_SOURCE_DIR}/include ${PROJECT_BINARY_DIR}/include ${PROJECT_SOURCE_DIR}/src)
  set(deps)
  foreach(d IN LISTS ARG_DEPS)
    list(APPEND deps tiv_${d})
  endforeach()
  target_link_libraries(tiv_${name} PUBLIC ${deps} m)
  set(TIV_SUBSYSTEMS ${TIV_SUBSYSTEMS} ${name} PARENT_SCOPE)
endfunction()
