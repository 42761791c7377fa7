# A program is built against the installed tree, and run where device memory is ordinary memory.
if(GPURUNTIME_SANITIZE)
  return()  # Its callers would have to be sanitized too.
endif()
if(GPURUNTIME_BACKEND STREQUAL "cpu")
  set(what run)
else()
  set(what link)
endif()
add_test(NAME install COMMAND ${PROJECT_SOURCE_DIR}/scripts/checkinstall.sh ${PROJECT_BINARY_DIR} ${what})
set_tests_properties(install PROPERTIES ENVIRONMENT
  "CXX=${CMAKE_CXX_COMPILER};CMAKE=${CMAKE_COMMAND};CMAKE_GENERATOR=${CMAKE_GENERATOR}")
