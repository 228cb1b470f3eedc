# The standard headers that most sources begin with, compiled once. packaging/tidy.sh reads every source without them, so
# that each still names what it needs.
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/precompiled.cc CONTENT "")
add_library(zendrix_precompiled STATIC EXCLUDE_FROM_ALL ${PROJECT_BINARY_DIR}/precompiled.cc)
set_target_properties(zendrix_precompiled PROPERTIES POSITION_INDEPENDENT_CODE ON)
target_link_libraries(zendrix_precompiled PRIVATE zendrix_flags)
target_precompile_headers(zendrix_precompiled PRIVATE <algorithm> <array> <cstdint> <functional> <memory> <optional>
  <string> <string_view> <utility> <vector>)

# A room is one library target. Its DEPS are the rooms and packages it may see: the link lines are the
# architecture diagram. Sources are globbed, so that a new unit needs no change here. PRECOMPILE: headers of its own.
function(zendrix_room name)
  cmake_parse_arguments(ROOM "" "" "DEPS;PRIVATE_DEPS;PRECOMPILE" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cc)
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  if(sources)
    add_library(zendrix_${name} STATIC ${sources} ${headers})
    set_target_properties(zendrix_${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    target_include_directories(zendrix_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(zendrix_${name} PUBLIC zendrix_flags ${ROOM_DEPS} PRIVATE ${ROOM_PRIVATE_DEPS})
    if(ROOM_PRECOMPILE)
      target_precompile_headers(zendrix_${name} PRIVATE ${ROOM_PRECOMPILE})
    else()
      target_precompile_headers(zendrix_${name} REUSE_FROM zendrix_precompiled)
    endif()
  else()
    add_library(zendrix_${name} INTERFACE)
    target_include_directories(zendrix_${name} INTERFACE ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(zendrix_${name} INTERFACE zendrix_flags ${ROOM_DEPS})
  endif()
  add_library(zendrix::${name} ALIAS zendrix_${name})
endfunction()

# Registers a test program. Every test is a process of its own, or, where ZENDRIX_TEST_SHARES is set, each of that many
# processes has its share of the tests: with the sanitizers a process takes longer to start than most tests take.
function(zendrix_register_tests name timeout labels)
  if(ZENDRIX_TEST_SHARES)
    foreach(share RANGE 1 ${ZENDRIX_TEST_SHARES})
      math(EXPR index "${share} - 1")
      add_test(NAME ${name}.${share} COMMAND ${name} --gtest_brief=1)
      set_tests_properties(${name}.${share} PROPERTIES TIMEOUT ${timeout} LABELS "${labels}"
        ENVIRONMENT "GTEST_TOTAL_SHARDS=${ZENDRIX_TEST_SHARES};GTEST_SHARD_INDEX=${index}")
    endforeach()
  else()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 300 PROPERTIES TIMEOUT ${timeout} LABELS "${labels}")
  endif()
endfunction()

# One test program per room: tests/unit/<room>/*_test.cc. PRECOMPILE names the fixtures that most of them begin with.
function(zendrix_test name)
  cmake_parse_arguments(TEST "" "" "DEPS;LABELS;PRECOMPILE" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*_test.cc)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${TEST_DEPS} zendrix_test_support GTest::gmock GTest::gtest GTest::gmock_main)
  if(TEST_PRECOMPILE)
    target_precompile_headers(${name} PRIVATE ${ZENDRIX_TEST_HEADERS} ${TEST_PRECOMPILE})
  else()
    target_precompile_headers(${name} REUSE_FROM zendrix_test_precompiled)
  endif()
  target_compile_definitions(${name} PRIVATE ZENDRIX_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
  # For hangs: a test takes at most 20 seconds on a quiet machine.
  zendrix_register_tests(${name} 600 "${TEST_LABELS}")
endfunction()
