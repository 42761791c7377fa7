# The documents say what the tree says: the README's program is the one that is compiled here, and it prints what stands
# below it. Without the examples, it is not run.
find_program(GPURUNTIME_PYTHON python3 REQUIRED)
set(program "")
if(GPURUNTIME_EXAMPLES)
  set(program $<TARGET_FILE:ten_lines>)
endif()
add_test(NAME docs COMMAND ${GPURUNTIME_PYTHON} -B ${CMAKE_CURRENT_LIST_DIR}/docs_test.py ${program})
