# The examples, run as a newcomer runs them. Targets are defined later than this, and are known when the build is
# generated.
if(GPURUNTIME_EXAMPLES)
  find_package(Python3 QUIET COMPONENTS Interpreter)
  if(NOT Python3_FOUND)
    message(FATAL_ERROR "python3 is missing. Install the package python3 (apt-get install python3).")
  endif()
  add_test(NAME examples/convert_and_compare COMMAND convert_and_compare)
  set_tests_properties(examples/convert_and_compare PROPERTIES PASS_REGULAR_EXPRESSION
    "2.5 becomes 3, another value\n-2.5 becomes -3, another value\n7 becomes 7, the same\n300 becomes 127, another value\n-?nan becomes 0, another value\na NaN was taken for true")
  add_test(NAME examples/blur_picture COMMAND blur_picture ${CMAKE_CURRENT_BINARY_DIR}/blurred.png)
  set_tests_properties(examples/blur_picture PROPERTIES PASS_REGULAR_EXPRESSION
    "^41 passes a channel, as the plain sum\n$")
  foreach(example photograph signal turn_picture)
    add_test(NAME examples/${example} COMMAND
      ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_LIST_DIR}/${example}_test.py $<TARGET_FILE:${example}>)
  endforeach()
  add_test(NAME examples/table COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_LIST_DIR}/table_test.py
    $<TARGET_FILE:table> $<TARGET_FILE:make_table>)
endif()
