# The one place where third-party packages are found. All of them come from the system's packages
# (scripts/setup installs them); none of them is seen by the library's public headers.

find_package(Threads REQUIRED)
find_package(CURL REQUIRED)
find_package(ICU REQUIRED COMPONENTS i18n uc)
find_package(nlohmann_json REQUIRED)
find_package(SQLite3 REQUIRED)
find_package(simdjson REQUIRED)

if(TQSTOREKIT_TOOLS)
  find_package(CLI11 REQUIRED)
endif()
if(TQSTOREKIT_TESTS)
  find_package(GTest REQUIRED)
endif()
if(TQSTOREKIT_TESTS OR TQSTOREKIT_BENCHMARKS)  # the HTTP server that they talk to
  find_package(OpenSSL REQUIRED)
  find_package(ZLIB REQUIRED)
endif()
if(TQSTOREKIT_BENCHMARKS)
  find_package(benchmark REQUIRED)
  find_package(Qt5 QUIET COMPONENTS Core)  # optional: one row compares with its settings
endif()
