#pragma once

#include <curl/curl.h>

#include <memory>
#include <optional>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/URLRequest.hpp"

namespace Foundation::detail {

/// What keeps an HTTP message from being sent: a method that is no token, a field that cannot stand
/// in a head, an address of another kind.
[[nodiscard]] std::optional<NSError> problemOf(const URLRequest& request);

/// A request in libcurl's form. `request` must outlive the transfer: its body is not copied.
class CurlRequest {
 public:
  /// Sets address, method, fields and body, whatever the handle sent before.
  void apply(const URLRequest& request, CURL* easy);

 private:
  struct Free {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };
  using List = std::unique_ptr<curl_slist, Free>;
  static List fieldList(const URLRequest& request);

  List fields_;
};

/// Sets what is the same for every transfer, once for a handle: cookies and TLS sessions in `share`,
/// decoding, what libcurl must leave alone.
void applyCommonOptions(CURL* easy, CURLSH* share);

}  // namespace Foundation::detail
