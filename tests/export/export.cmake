if(NOT GPURUNTIME_HOST_STANDIN)
  return()  # The list names the stand-in's error.
endif()
# Exactly the interface is exported: the committed list fits the headers, and the library fits the list.
find_program(GPURUNTIME_PYTHON python3)
if(NOT GPURUNTIME_PYTHON)
  message(FATAL_ERROR "python3 is missing. Install the package python3 (apt-get install python3).")
endif()
add_test(NAME export COMMAND ${GPURUNTIME_PYTHON} ${PROJECT_SOURCE_DIR}/scripts/exportlist.py
  --check --library $<TARGET_FILE:gpuruntime> --nm ${CMAKE_NM})
