# The documents say what the tree says: their programs are those that are compiled here, and print what stands below
# them. Without the examples, they are not run.
find_program(GPURUNTIME_PYTHON python3 REQUIRED)
set(programs "")
if(GPURUNTIME_EXAMPLES)
  set(programs $<TARGET_FILE_DIR:ten_lines>)
endif()
add_test(NAME docs COMMAND ${GPURUNTIME_PYTHON} -B ${CMAKE_CURRENT_LIST_DIR}/docs_test.py ${programs})
