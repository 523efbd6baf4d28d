# Builds for 32-bit x86 with the compiler of a 64-bit machine, which runs the programs directly. Floating point uses
# SSE2, which rounds each result to its type: the x87 unit computes with 80 bits and rounds only when storing, so that
# results would depend on the optimiser.
set(CMAKE_C_COMPILER gcc) # needed to build GoogleTest
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_C_FLAGS_INIT -m32)
set(CMAKE_CXX_FLAGS_INIT "-m32 -msse2 -mfpmath=sse -idirafter /usr/include/x86_64-linux-gnu")
