# The report reads what the benchmarks write, and knows every family.
add_test(NAME report COMMAND ${GPURUNTIME_PYTHON} -B ${CMAKE_CURRENT_LIST_DIR}/report_test.py)
