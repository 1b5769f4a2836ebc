# For builds that are run and not worked on: the library and the platform are compiled in a few large
# pieces, so that what their sources include is read a few times only. Such a build does not see what
# a source forgets to include; the others do.
cmake_language(DEFER CALL tqstorekit_unite)

function(tqstorekit_unite)
  set_target_properties(Platform EmbeddedPlatform TQStoreKitLib PROPERTIES
    UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 16)
endfunction()
