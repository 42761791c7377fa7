# The demo, run as a newcomer runs it. Its target is defined later than this, and is known when the build is generated.
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
  add_test(NAME examples/turn_picture
           COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_LIST_DIR}/turn_picture_test.py $<TARGET_FILE:turn_picture>)
endif()
