# tqstorekit_tests(NAME [LABELS label...] SOURCES file...)
#
# One test program. ctest runs each of its tests in a process of its own, so that a test may use what
# exists once in a process: the shared instance, the embedded store, the main queue.
include(GoogleTest)

# What every test includes is read once for all of them.
file(CONFIGURE OUTPUT test_headers.cpp CONTENT "// Has nothing but precompiled headers.\n")
add_library(tqstorekit_test_headers OBJECT ${CMAKE_CURRENT_BINARY_DIR}/test_headers.cpp)
target_link_libraries(tqstorekit_test_headers PRIVATE
  TQStoreKitLib::TQStoreKitLib GTest::gmock GTest::gtest tqstorekit_settings)
target_precompile_headers(tqstorekit_test_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h>)

function(tqstorekit_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LABELS")
  add_executable(${name} ${arg_SOURCES})
  target_compile_definitions(${name} PRIVATE TQSTOREKIT_TEST_DATA="${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE
    TQStoreKitLib::TQStoreKitLib GTest::gmock_main GTest::gtest tqstorekit_settings tqstorekit_program_settings)
  if(arg_LABELS)
    set(labels LABELS ${arg_LABELS})
  endif()
  target_precompile_headers(${name} REUSE_FROM tqstorekit_test_headers)
  gtest_discover_tests(${name}
    DISCOVERY_TIMEOUT 60 NO_PRETTY_VALUES
    PROPERTIES TIMEOUT 120 ENVIRONMENT TQSTORE_LEDGER=:memory:
      ENVIRONMENT_MODIFICATION TSAN_OPTIONS=path_list_prepend:suppressions=${PROJECT_SOURCE_DIR}/tests/thread-sanitizer.supp
      ${labels})
  # What ThreadSanitizer is for can be built alone.
  if("threads" IN_LIST arg_LABELS)
    if(NOT TARGET thread_tests)
      add_custom_target(thread_tests)
    endif()
    add_dependencies(thread_tests ${name})
  endif()
endfunction()
