# The Agent's programs for the kernel (agent/bpf). They are compiled by clang, their loader is made by bpftool, and
# libbpf brings them into the kernel. Where one of these is missing the Agent is built without them, and says so at
# run time. Sets ZENDRIX_KERNEL_PROGRAMS, and where it is ON the target zendrix_kernel_programs with what to link.
find_program(ZENDRIX_BPF_CLANG NAMES clang clang-19 clang-16 clang-14)
find_program(ZENDRIX_BPFTOOL NAMES bpftool HINTS /usr/sbin /sbin)
find_package(PkgConfig QUIET)
if(PkgConfig_FOUND)
  pkg_check_modules(LIBBPF QUIET IMPORTED_TARGET libbpf>=1.1)
endif()

set(missing)
if(NOT ZENDRIX_BPF_CLANG)
  list(APPEND missing clang)
endif()
if(NOT ZENDRIX_BPFTOOL)
  list(APPEND missing bpftool)
endif()
if(NOT LIBBPF_FOUND)
  list(APPEND missing libbpf)
endif()
if(missing)
  list(JOIN missing ", " missing)
  set(ZENDRIX_KERNEL_PROGRAMS OFF)
  message(STATUS "Agent: WITHOUT its kernel programs (missing: ${missing}); it will look at processes and connections "
    "from time to time only")
  return()
endif()
set(ZENDRIX_KERNEL_PROGRAMS ON)
message(STATUS "Agent: with its kernel programs")

set(made ${PROJECT_BINARY_DIR}/kernel_programs/agent/bpf)
set(source ${PROJECT_SOURCE_DIR}/agent/bpf)
file(MAKE_DIRECTORY ${made})
# bpftool's linking also leaves out what only a debugger reads.
add_custom_command(OUTPUT ${made}/zendrix.skel.h
  COMMAND ${ZENDRIX_BPF_CLANG} -target bpf -O2 -g -ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -Wall -Werror -c ${source}/zendrix.bpf.c -o ${made}/zendrix.raw.o
  COMMAND ${ZENDRIX_BPFTOOL} gen object ${made}/zendrix.bpf.o ${made}/zendrix.raw.o
  COMMAND ${ZENDRIX_BPFTOOL} gen skeleton ${made}/zendrix.bpf.o name zendrix_bpf > ${made}/zendrix.skel.h
  DEPENDS ${source}/zendrix.bpf.c ${source}/kernel_types.h ${source}/records.h
  COMMENT "Compiling the programs for the kernel" VERBATIM)
add_custom_target(zendrix_skeleton DEPENDS ${made}/zendrix.skel.h)
add_library(zendrix_kernel_programs INTERFACE)
# As a system's header: what a tool writes is not held to this project's warnings.
target_include_directories(zendrix_kernel_programs SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/kernel_programs)
target_link_libraries(zendrix_kernel_programs INTERFACE PkgConfig::LIBBPF)
add_dependencies(zendrix_kernel_programs zendrix_skeleton)
