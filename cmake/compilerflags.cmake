# Flags of every target. The order of floating-point operations is part of every result: nothing is contracted, and no
# flag that changes a value is allowed.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_FLAGS_RELEASE "-O3")
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

set(gpuruntimeHostFlags -ffp-contract=off -fno-math-errno -fno-trapping-math)
set(gpuruntimeWarnings -Wall -Wextra)
add_library(gpuruntimeFlags INTERFACE)

if(GPURUNTIME_BACKEND STREQUAL "cuda")
  set(CMAKE_CUDA_STANDARD 17)
  set(CMAKE_CUDA_FLAGS_RELEASE "-O3")
  # nvcc includes the toolkit's vector types ahead of every source. Hidden, they would hide the members that take them;
  # here the export list alone decides.
  set(CMAKE_CUDA_VISIBILITY_PRESET default)
  set(CMAKE_CUDA_RUNTIME_LIBRARY Shared)
  string(JOIN "," hostList ${gpuruntimeHostFlags} -Wall)
  target_compile_options(gpuruntimeFlags INTERFACE
    $<$<COMPILE_LANGUAGE:CUDA>:--expt-relaxed-constexpr -fmad=false -prec-div=true -prec-sqrt=true -Xcompiler=${hostList} -Xptxas=-warn-spills
      --diag-suppress=20012,177>
    $<$<COMPILE_LANGUAGE:CXX>:${gpuruntimeHostFlags} ${gpuruntimeWarnings}>)
else()
  target_compile_options(gpuruntimeFlags INTERFACE ${gpuruntimeHostFlags} ${gpuruntimeWarnings})
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64" OR GPURUNTIME_VECTOR_LEVEL STREQUAL "native")
    target_compile_options(gpuruntimeFlags INTERFACE -march=${GPURUNTIME_VECTOR_LEVEL})
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Loops over threads are all marked as independent; not every one pays to vectorise.
    target_compile_options(gpuruntimeFlags INTERFACE -Wno-pass-failed)
  endif()
  # Of the widest vectors the compiler makes use only when asked.
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    target_compile_options(gpuruntimeFlags INTERFACE -mprefer-vector-width=512)
  endif()
endif()

if(GPURUNTIME_CHECKING)
  target_compile_definitions(gpuruntimeFlags INTERFACE GPURUNTIME_CHECKING)
endif()
if(GPURUNTIME_CHECK_INDICES)
  target_compile_definitions(gpuruntimeFlags INTERFACE GPURUNTIME_CHECK_INDICES)
endif()
if(GPURUNTIME_SANITIZE)
  target_compile_options(gpuruntimeFlags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(gpuruntimeFlags INTERFACE -fsanitize=address,undefined)
endif()
