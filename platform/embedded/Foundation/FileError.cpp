#include "platform/embedded/Foundation/FileError.hpp"

#include "platform/Foundation/FileManager.hpp"
#include "platform/Foundation/JSONEncoder.hpp"

namespace Foundation {

namespace {

NSFileErrorCode codeFor(std::error_code reason) {
  switch (static_cast<std::errc>(reason.default_error_condition().value())) {
    case std::errc::no_such_file_or_directory:
      return NSFileNoSuchFileError;
    case std::errc::permission_denied:
    case std::errc::operation_not_permitted:
      return NSFileWriteNoPermissionError;
    case std::errc::file_exists:
    case std::errc::directory_not_empty:
      return NSFileWriteFileExistsError;
    case std::errc::no_space_on_device:
      return NSFileWriteOutOfSpaceError;
    case std::errc::read_only_file_system:
      return NSFileWriteVolumeReadOnlyError;
    case std::errc::invalid_argument:
    case std::errc::filename_too_long:
    case std::errc::illegal_byte_sequence:
      return NSFileWriteInvalidFileNameError;
    case std::errc::wrong_protocol_type:
      return NSFileWriteUnsupportedSchemeError;
    default:
      return NSFileWriteUnknownError;
  }
}

}  // namespace

NSError fileError(std::error_code reason, std::string_view what, std::string path) {
  const auto message = reason.message();
  NSError::UserInfo userInfo;
  userInfo.emplace(NSLocalizedDescriptionKey, std::string(what) + ": " + message);
  userInfo.emplace(kFilePathErrorKey, std::move(path));
  userInfo.emplace(NSUnderlyingErrorKey, NSError::withDescription(std::string(NSPOSIXErrorDomain),
                                                                  reason.value(), message));
  return {std::string(NSCocoaErrorDomain), codeFor(reason), std::move(userInfo)};
}

}  // namespace Foundation
