# Finds what the library calls. A missing package is named, with the Debian package that brings it.
if(GPURUNTIME_DEPENDENCIES)
  list(PREPEND CMAKE_PREFIX_PATH ${GPURUNTIME_DEPENDENCIES})
endif()

function(gpuruntime_require_header variable header debianPackage)
  find_path(${variable} ${header} HINTS ${ARGN})
  if(NOT ${variable})
    message(FATAL_ERROR "${header} is missing. Install the package ${debianPackage} (apt-get install ${debianPackage}), "
                        "or name an offline bundle with -DGPURUNTIME_DEPENDENCIES=FOLDER.")
  endif()
endfunction()

add_library(gpuruntimeDependencies INTERFACE)
gpuruntime_require_header(BOOST_INCLUDE_FOLDER boost/mpl/vector.hpp libboost-dev)
gpuruntime_require_header(RANDOM123_INCLUDE_FOLDER Random123/philox.h librandom123-dev)
target_include_directories(gpuruntimeDependencies SYSTEM INTERFACE ${BOOST_INCLUDE_FOLDER} ${RANDOM123_INCLUDE_FOLDER})

if(GPURUNTIME_BACKEND STREQUAL "cpu")
  find_package(TBB QUIET)
  if(NOT TBB_FOUND)
    message(FATAL_ERROR "oneTBB is missing. Install the package libtbb-dev (apt-get install libtbb-dev).")
  endif()
  target_link_libraries(gpuruntimeDependencies INTERFACE TBB::tbb)

  # Thrust's headers: those of a CUDA toolkit where there is one, which nvcc finds by itself, or the system's.
  gpuruntime_require_header(THRUST_INCLUDE_FOLDER thrust/version.h libthrust-dev
    /usr/local/cuda/include/cccl /usr/local/cuda/include)
  target_include_directories(gpuruntimeDependencies SYSTEM INTERFACE ${THRUST_INCLUDE_FOLDER})
endif()
