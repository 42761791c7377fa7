# What the choice of the backend decides for the targets of src: units, language, include folder, libraries.
set(platformFolder platform/${GPURUNTIME_BACKEND})
if(GPURUNTIME_BACKEND STREQUAL "cuda")
  find_package(CUDAToolkit REQUIRED)
  set(platformUnits "")
  set(platformLibraries CUDA::cudart)
  set_source_files_properties(${units} PROPERTIES LANGUAGE CUDA)
else()
  set(platformUnits ${platformFolder}/checking.cpp ${platformFolder}/devicemodel.cpp ${platformFolder}/executor.cpp
    ${platformFolder}/transcendental.cpp)
  set(platformLibraries TBB::tbb)
endif()
