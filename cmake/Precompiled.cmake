# For builds that are run and not worked on: what most sources of the library and the platform
# include is read once. Such a build does not see what a source forgets to include; the others do.
cmake_language(DEFER CALL tqstorekit_precompile)

function(tqstorekit_precompile)
  foreach(target Platform EmbeddedPlatform TQStoreKitLib)
    target_precompile_headers(${target} PRIVATE
      <algorithm> <any> <chrono> <functional> <map> <memory> <mutex> <optional> <set> <string>
      <unordered_set> <variant> <vector>)
  endforeach()
endfunction()
