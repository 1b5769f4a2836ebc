#pragma once

#include <map>
#include <string>

namespace Foundation {

/// The default strings table of the main bundle: a desktop program has no bundle, so it says here
/// what its translations are, keyed by the text to translate. Replaces the table that was there.
///
/// Thread: any.
void setMainBundleStrings(std::map<std::string, std::string, std::less<>> strings);

}  // namespace Foundation
