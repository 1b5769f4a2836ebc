# For builds that only have to link: what every source includes is read once. Such a build does not
# see what a source forgets to include.
cmake_language(DEFER CALL precompile_headers)

function(precompile_headers)
  foreach(target TQStoreKitLib Platform ApplePlatform)
    target_precompile_headers(${target} PRIVATE
      <any> <chrono> <functional> <map> <memory> <mutex> <optional> <set> <string> <unordered_set>
      <variant> <vector>)
  endforeach()
endfunction()
