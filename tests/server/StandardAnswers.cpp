#include "tests/server/StandardAnswers.hpp"

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>

namespace tests {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kTenBytes = "0123456789";

// What stands behind the last slash.
std::string argument(const Exchange& exchange) {
  const auto path = exchange.request.path();
  return path.substr(path.rfind('/') + 1);
}

std::size_t count(const Exchange& exchange) { return std::stoul(argument(exchange)); }

std::string lowerCase(std::string text) {
  for (auto& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

HttpHeaders length(std::size_t bytes) { return {{"Content-Length", std::to_string(bytes)}}; }

void echo(Exchange& exchange) {
  const auto& request = exchange.request;
  Json headers = Json::object();
  for (const auto& [name, value] : request.headers) headers[lowerCase(name)] = value;
  const Json json = {{"method", request.method},
                     {"target", request.target},
                     {"headers", headers},
                     {"body", request.body}};
  const auto text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
  exchange.respond(200, text, {{"Content-Type", "application/json; charset=utf-8"}});
}

void status(Exchange& exchange) {
  const int code = std::stoi(argument(exchange));
  if (code == 204 || code == 304) {
    exchange.send(responseHead(code, {}));
  } else {
    exchange.respond(code, "status " + std::to_string(code));
  }
}

void stream(Exchange& exchange) {
  static const auto& piece = *new std::string(patternedBytes(std::size_t{1} << 20U));
  auto left = count(exchange);
  bool taken = exchange.send(responseHead(200, length(left)));
  while (taken && left > 0) {
    const auto size = std::min(left, piece.size());
    taken = exchange.send(std::string_view(piece).substr(0, size));
    left -= size;
  }
}

void chunked(Exchange& exchange) {
  const auto bytes = patternedBytes(count(exchange));
  exchange.send(responseHead(200, {{"Transfer-Encoding", "chunked"}}));
  for (std::size_t at = 0; at < bytes.size(); at += 1000) {
    exchange.send(chunk(std::string_view(bytes).substr(at, 1000)));
  }
  exchange.send(chunk(""));
}

void gzip(Exchange& exchange) {
  exchange.respond(200, gzipped(quickBrownFox()),
                   {{"Content-Encoding", "gzip"}, {"Content-Type", "text/plain"}});
}

void noLength(Exchange& exchange) {
  exchange.send(responseHead(200, {}) + patternedBytes(count(exchange)));
  exchange.close();
}

void early(Exchange& exchange) {
  exchange.send(responseHead(200, length(100)));
  exchange.send(kTenBytes);
  exchange.close();
}

void earlyChunked(Exchange& exchange) {
  exchange.send(responseHead(200, {{"Transfer-Encoding", "chunked"}}) + chunk(kTenBytes));
  exchange.close();
}

void earlyReset(Exchange& exchange) {
  exchange.send(responseHead(200, length(100)));
  exchange.send(kTenBytes);
  exchange.reset();
}

void tooLong(Exchange& exchange) {
  exchange.send(responseHead(200, length(5)) + std::string(kTenBytes));
}

void garbage(Exchange& exchange) {
  exchange.send("\x16\x03\x01 this is not HTTP\r\n\r\nat all\r\n");
  exchange.close();
}

void badLength(Exchange& exchange) {
  exchange.send(responseHead(200, {{"Content-Length", "many"}}) + "what?");
  exchange.close();
}

void wait(Exchange& exchange) {
  if (exchange.waitForGate(exchange.request.query("gate", "answer"))) {
    exchange.respond(200, "answered");
  } else {
    exchange.close();
  }
}

void stall(Exchange& exchange) {
  exchange.send(responseHead(200, length(kTenBytes.size())));
  exchange.send(kTenBytes.substr(0, 5));
  if (!exchange.waitForGate("rest")) return exchange.close();
  exchange.send(kTenBytes.substr(5));
}

void drip(Exchange& exchange) {
  exchange.send(responseHead(200, length(kTenBytes.size())));
  for (const char byte : kTenBytes) {
    const std::string gate(1, byte);
    if (!exchange.waitForGate(gate)) return exchange.close();
    exchange.send(gate);
  }
}

void unread(Exchange& exchange) {
  exchange.waitForGateOnly("read");
  exchange.close();
}

void redirect(Exchange& exchange) {
  exchange.respond(std::stoi(exchange.request.query("status", "302")), "look elsewhere",
                   {{"Location", exchange.request.query("to")}});
}

void redirects(Exchange& exchange) {
  const auto left = count(exchange);
  const auto code = exchange.request.query("status", "302");
  const auto next = left <= 1 ? "/echo" : "/redirects/" + std::to_string(left - 1);
  exchange.respond(std::stoi(code), "look elsewhere", {{"Location", next + "?status=" + code}});
}

void manyHeaders(Exchange& exchange) {
  HttpHeaders headers = length(2);
  auto left = count(exchange);
  for (int i = 0; left > 0; ++i) {
    const auto size = std::min<std::size_t>(left, 4000);
    headers.emplace_back("X-Filler-" + std::to_string(i), std::string(size, 'x'));
    left -= size;
  }
  exchange.send(responseHead(200, headers) + "ok");
}

void setCookie(Exchange& exchange) {
  const auto& target = exchange.request.target;
  exchange.respond(200, "set", {{"Set-Cookie", target.substr(target.find('?') + 1) + "; Path=/"}});
}

void duplicateHeaders(Exchange& exchange) {
  exchange.respond(
      200, "twice",
      {{"X-Twice", "one"}, {"Set-Cookie", "a=1"}, {"x-twice", "two"}, {"Set-Cookie", "b=2"}});
}

void file(Exchange& exchange) {
  HttpHeaders headers{{"Content-Type", "application/octet-stream"}};
  const auto name = exchange.request.query("as");
  if (!name.empty()) {
    headers.emplace_back("Content-Disposition", "attachment; filename=\"" + name + "\"");
  }
  exchange.respond(200, kTenBytes, headers);
}

void noLocation(Exchange& exchange) { exchange.respond(302, "nowhere to go"); }
void hangUp(Exchange& exchange) { exchange.close(); }
void empty(Exchange& exchange) { exchange.respond(200, ""); }
void bytes(Exchange& exchange) { exchange.respond(200, patternedBytes(count(exchange))); }
void text(Exchange& exchange) {
  exchange.respond(200, quickBrownFox(), {{"Content-Type", "text/plain"}});
}
void gzipGarbage(Exchange& exchange) {
  exchange.respond(200, "this is no gzip", {{"Content-Encoding", "gzip"}});
}

}  // namespace

std::string quickBrownFox() { return "The quick brown fox jumps over the lazy dog."; }

bool leavesBodyUnread(const HttpRequest& request) { return request.path() == "/unread"; }

std::vector<std::pair<std::string, Answer>> standardAnswers() {
  return {{"/echo", echo},
          {"/status/", status},
          {"/text", text},
          {"/empty", empty},
          {"/bytes/", bytes},
          {"/stream/", stream},
          {"/chunked/", chunked},
          {"/gzip", gzip},
          {"/gzip-garbage", gzipGarbage},
          {"/no-length/", noLength},
          {"/early-close", early},
          {"/early-chunked", earlyChunked},
          {"/early-reset", earlyReset},
          {"/too-long", tooLong},
          {"/hang-up", hangUp},
          {"/garbage", garbage},
          {"/bad-length", badLength},
          {"/wait", wait},
          {"/stall", stall},
          {"/drip", drip},
          {"/unread", unread},
          {"/redirect", redirect},
          {"/redirects/", redirects},
          {"/no-location", noLocation},
          {"/headers/", manyHeaders},
          {"/set-cookie", setCookie},
          {"/duplicate-headers", duplicateHeaders},
          {"/file/", file}};
}

}  // namespace tests
