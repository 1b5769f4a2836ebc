#include "TQStoreKitLib/TQNetworking/TQProgressDownload.hpp"

namespace TQStoreKitLib {

void TQProgressDownload::didFinishDownloadingTo(
    Foundation::URLSessionDownloadTask& /*downloadTask*/, const Foundation::URL& /*location*/) {}

void TQProgressDownload::didWriteData(Foundation::URLSessionDownloadTask& /*downloadTask*/,
                                      std::int64_t bytesWritten, std::int64_t totalBytesWritten,
                                      std::int64_t totalBytesExpectedToWrite) {
  if (progress_) progress_(bytesWritten, totalBytesWritten, totalBytesExpectedToWrite);
}

}  // namespace TQStoreKitLib
