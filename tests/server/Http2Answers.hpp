#pragma once

#include <functional>

#include "tests/server/HttpMessage.hpp"
#include "tests/server/Peer.hpp"

namespace tests {

/// Speaks HTTP/2 until the client is gone: whatever is asked, the answer is status 200 and the body
/// "HTTP/2"; a request with a body is never answered. What was asked is not read; `asked` is told of
/// each request, with the method "HTTP/2".
void answerHttp2(Peer& peer, int connection, const std::function<void(const HttpRequest&)>& asked);

}  // namespace tests
