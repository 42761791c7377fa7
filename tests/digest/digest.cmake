# The digest program, held against the committed lines.
add_executable(digest digest/main.cpp digest/build.cpp digest/complex.cpp digest/convolutions.cpp digest/elements.cpp
  digest/elmath.cpp digest/filter.cpp digest/indexing.cpp digest/interp.cpp digest/reductions.cpp digest/scans.cpp
  digest/search.cpp digest/sorting.cpp)
target_include_directories(digest PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(digest PRIVATE gpuruntime gpuruntimeRecipes gpuruntimeFlags GTest::gtest)
add_test(NAME digest COMMAND digest ${CMAKE_CURRENT_SOURCE_DIR}/digest/digests.txt)
