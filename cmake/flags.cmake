# One interface target carries every compiler flag; each room links it.
add_library(zendrix_flags INTERFACE)
target_compile_options(zendrix_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
  # A function that no header declares belongs to its own file alone: into a nameless namespace with it.
  -Wmissing-declarations
  # GCC 12 sees overlaps and overruns in its own std::string when texts are joined.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds> $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overread> $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow>
  $<$<BOOL:${ZENDRIX_WERROR}>:-Werror>
  -fno-strict-aliasing -fstack-protector-strong)
target_compile_definitions(zendrix_flags INTERFACE
  $<$<NOT:$<CONFIG:Debug>>:_FORTIFY_SOURCE=2>)
# A test's own code (property ZENDRIX_TEST_CODE) is not optimized; under the sanitizers it is watched for memory errors
# only, and its lines are not named. It is as large as all the rooms together, and would take most of a build's time.
set(test_code $<BOOL:$<TARGET_PROPERTY:ZENDRIX_TEST_CODE>>)
target_compile_options(zendrix_flags INTERFACE $<${test_code}:-O0>)
if(ZENDRIX_SANITIZE)
  target_compile_options(zendrix_flags INTERFACE
    -fsanitize=${ZENDRIX_SANITIZE} $<${test_code}:-fno-sanitize=undefined> $<${test_code}:-g0>
    -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zendrix_flags INTERFACE -fsanitize=${ZENDRIX_SANITIZE})
endif()
if(ZENDRIX_FUZZ)
  # Coverage counters in every room, so that the fuzzers see which inputs reach new code.
  target_compile_options(zendrix_flags INTERFACE $<$<NOT:${test_code}>:-fsanitize=fuzzer-no-link>)
endif()
