# apple_tests(NAME SOURCES file... [DOUBLES target...] [EXCEPT test...] [ALONE])
#
# One test program over the layer. Its tests run in one process, one after the other; with ALONE each
# has a process of its own, for what cannot be made to forget. The excepted ones do not run.
include(GoogleTest)

# A test registers itself before main.
add_library(apple_test_settings INTERFACE)
target_compile_options(apple_test_settings INTERFACE -Wno-global-constructors)

# What all of these programs share: where they begin, and what every test includes, read once.
add_library(apple_test_main OBJECT main.mm SanitizerOptions.cpp)
target_compile_definitions(apple_test_main PRIVATE TQSTOREKIT_TEST_DATA="${root}/tests")
target_link_libraries(apple_test_main PRIVATE
  TQStoreKitLib::TQStoreKitLib GTest::gmock GTest::gtest tqstorekit_settings apple_test_settings)
target_precompile_headers(apple_test_main PRIVATE <gmock/gmock.h> <gtest/gtest.h>)

function(apple_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "ALONE" "" "SOURCES;DOUBLES;EXCEPT")
  add_executable(${name} ${arg_SOURCES})
  target_compile_definitions(${name} PRIVATE TQSTOREKIT_TEST_DATA="${root}/tests")
  target_link_libraries(${name} PRIVATE
    ${arg_DOUBLES} apple_doubles apple_test_main TQStoreKitLib::TQStoreKitLib GTest::gmock GTest::gtest
    tqstorekit_settings apple_test_settings)
  target_precompile_headers(${name} REUSE_FROM apple_test_main)
  list(JOIN arg_EXCEPT ":" exceptions)
  if(arg_ALONE)
    gtest_discover_tests(${name} TEST_FILTER "-${exceptions}" DISCOVERY_TIMEOUT 60
      PROPERTIES TIMEOUT 60 ENVIRONMENT TQSTORE_LEDGER=:memory:)
  else()
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1 --gtest_filter=-${exceptions})
    set_tests_properties(${name} PROPERTIES TIMEOUT 120 ENVIRONMENT TQSTORE_LEDGER=:memory:)
  endif()
endfunction()
