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
