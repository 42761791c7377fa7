# Compilers fuse products beside each other into an alternating sum although they are told not to contract.
if(GPURUNTIME_BACKEND STREQUAL "cpu" AND CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
  add_test(NAME contraction COMMAND sh -c
    "test -x \"$0\" -a -r \"$1\" && ! \"$0\" -d \"$1\" | grep -E 'vfm(addsub|subadd)'"
    ${CMAKE_OBJDUMP} $<TARGET_FILE:gpuruntime>)
endif()
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
