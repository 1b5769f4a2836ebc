#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/server/HttpServer.hpp"

namespace tests {

/// What every test server answers. A path that ends with a slash takes what follows as its argument.
///
///   /echo            the request as JSON: method, target, headers (an object, names in lower case), body
///   /status/N        status N; the body is "status N" (none for 204 and 304)
///   /text            "The quick brown fox jumps over the lazy dog.", text/plain
///   /empty           status 200, a body of no bytes
///   /bytes/N         N patterned bytes (patternedBytes) with their length
///   /stream/N        N bytes in large pieces, with their length: for very long bodies
///   /chunked/N       N patterned bytes in chunks of at most 1000
///   /gzip            the text of /text, in gzip's format
///   /gzip-garbage    says that it is gzip, and is not
///   /no-length/N     N patterned bytes, without a length; the connection ends with the body
///   /early-close     a length of 100, ten bytes, then the end of the connection
///   /early-chunked   a chunk, then the end of the connection before the last one
///   /early-reset     a length of 100, ten bytes, then a reset
///   /too-long        a length of 5, then the ten bytes "0123456789" on a connection that stays open
///   /hang-up         the end of the connection instead of an answer
///   /garbage         bytes that are not HTTP, then the end of the connection
///   /bad-length      a Content-Length that is no number
///   /wait            status 200 and "answered", once the gate "answer" (or ?gate=NAME) is open
///   /stall           five of ten bytes ("01234"); the rest once the gate "rest" is open
///   /drip            "0123456789": a byte for each gate "0" to "9" that is opened
///   /unread          leaves the body unread until the gate "read" is open, then ends the connection
///   /redirect?to=URL&status=N  redirects there (302 without a number)
///   /redirects/N     N redirects, the last to /echo; keeps ?status=N
///   /no-location     status 302 without a Location, with a body
///   /headers/N       fields of N bytes in all, of at most 4000 each
///   /set-cookie?name=value   sets the cookie of that name and value
///   /duplicate-headers       two fields "X-Twice" and two "Set-Cookie"
///   /file/NAME       ten bytes; with ?as=NAME a Content-Disposition of that file name
[[nodiscard]] std::vector<std::pair<std::string, Answer>> standardAnswers();

/// The sentence of /text.
[[nodiscard]] std::string quickBrownFox();

/// True for a request whose body the server does not read before it answers.
[[nodiscard]] bool leavesBodyUnread(const HttpRequest& request);

}  // namespace tests
