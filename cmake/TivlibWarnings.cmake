# Warning set of every target built from this tree.
add_library(tiv_options INTERFACE)
target_compile_options(tiv_options INTERFACE -Wall -Wextra -Wpedantic
  $<$<COMPILE_LANGUAGE:CXX>:-Wno-missing-field-initializers>)
if(TIVLIB_WERROR)
  target_compile_options(tiv_options INTERFACE -Werror)
endif()
if(TIVLIB_FAULT_INJECTION)
  target_compile_definitions(tiv_options INTERFACE TIVLIB_FAULT_INJECTION=1)
endif()
# GCC 12 reports -Wrestrict falsely inside std::string's inlined copies at -O2 (GCC bug
# 105329); the warning says nothing about this code there.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(tiv_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
endif()
