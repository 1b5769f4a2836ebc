#pragma once

#include <cstdint>
#include <string_view>

namespace Foundation {

/// The domain of the errors of loading something from an address.
inline constexpr std::string_view NSURLErrorDomain = "NSURLErrorDomain";
/// User-info key of the address that could not be loaded; its value is a `std::string`.
inline constexpr std::string_view kURLErrorFailingURLStringKey = "NSErrorFailingURLStringKey";

/// The codes of `NSURLErrorDomain`. The platform may send numbers that no enumerator has.
enum NSURLErrorCode : std::int64_t {
  NSURLErrorUnknown = -1,
  NSURLErrorCancelled = -999,
  NSURLErrorBadURL = -1000,
  NSURLErrorTimedOut = -1001,
  NSURLErrorUnsupportedURL = -1002,
  NSURLErrorCannotFindHost = -1003,
  NSURLErrorCannotConnectToHost = -1004,
  NSURLErrorNetworkConnectionLost = -1005,
  NSURLErrorDNSLookupFailed = -1006,
  NSURLErrorHTTPTooManyRedirects = -1007,
  NSURLErrorResourceUnavailable = -1008,
  NSURLErrorNotConnectedToInternet = -1009,
  NSURLErrorRedirectToNonExistentLocation = -1010,
  NSURLErrorBadServerResponse = -1011,
  NSURLErrorUserCancelledAuthentication = -1012,
  NSURLErrorUserAuthenticationRequired = -1013,
  NSURLErrorZeroByteResource = -1014,
  NSURLErrorCannotDecodeRawData = -1015,
  NSURLErrorCannotDecodeContentData = -1016,
  NSURLErrorCannotParseResponse = -1017,
  NSURLErrorAppTransportSecurityRequiresSecureConnection = -1022,
  NSURLErrorFileDoesNotExist = -1100,
  NSURLErrorFileIsDirectory = -1101,
  NSURLErrorNoPermissionsToReadFile = -1102,
  NSURLErrorDataLengthExceedsMaximum = -1103,
  NSURLErrorSecureConnectionFailed = -1200,
  NSURLErrorServerCertificateHasBadDate = -1201,
  NSURLErrorServerCertificateUntrusted = -1202,
  NSURLErrorServerCertificateHasUnknownRoot = -1203,
  NSURLErrorServerCertificateNotYetValid = -1204,
  NSURLErrorClientCertificateRejected = -1205,
  NSURLErrorClientCertificateRequired = -1206,
  NSURLErrorCannotLoadFromNetwork = -2000,
  NSURLErrorCannotCreateFile = -3000,
  NSURLErrorCannotOpenFile = -3001,
  NSURLErrorCannotCloseFile = -3002,
  NSURLErrorCannotWriteToFile = -3003,
  NSURLErrorCannotRemoveFile = -3004,
  NSURLErrorCannotMoveFile = -3005,
  NSURLErrorDownloadDecodingFailedMidStream = -3006,
  NSURLErrorDownloadDecodingFailedToComplete = -3007,
};

}  // namespace Foundation
