# For programs that hold all their libraries and run on any Linux of their processor, with whatever C library that has:
# cmake -DCMAKE_PROJECT_Velmora_INCLUDE=packaging/linux/static.cmake. A static program can load no library, so it draws no
# pictures.
set(CMAKE_FIND_LIBRARY_SUFFIXES .a)
set(Boost_USE_STATIC_LIBS ON)
set(VELMORA_PICTURES OFF)
# At addresses that change from run to run, as for every other program.
set(CMAKE_EXE_LINKER_FLAGS "${CMAKE_EXE_LINKER_FLAGS} -static-pie")
# What static libraries need of others.
set(CMAKE_CXX_STANDARD_LIBRARIES "-licudata -ltinfo")
