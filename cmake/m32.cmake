# Builds for 32-bit x86 with the compiler of the 64-bit machine; the programs run as they are. Reals are computed with
# SSE2, which rounds each result to its type: the old floating-point unit computes with 80 bits and rounds when it
# happens to store, so that the last bit of a grey would depend on the optimiser.
set(CMAKE_C_COMPILER gcc) # which the build of GoogleTest asks for
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_C_FLAGS_INIT -m32)
set(CMAKE_CXX_FLAGS_INIT "-m32 -msse2 -mfpmath=sse -idirafter /usr/include/x86_64-linux-gnu")
