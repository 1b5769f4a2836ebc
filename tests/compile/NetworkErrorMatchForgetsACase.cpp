#include "TQStoreKitLib/TQNetworking/TQNWError.hpp"

using TQStoreKitLib::TQNWError;

void use(const TQNWError& error) {
#ifdef MAKE_IT_RIGHT
  error.match([](const TQNWError::StringEncodingFailed&) {},
              [](const TQNWError::JsonDecodeFailed&) {},
              [](const TQNWError::ObjectDecodeFailed&) {}, [](const TQNWError::Common&) {},
              [](const TQNWError::NoData&) {}, [](const TQNWError::Unknow&) {});
#else
  error.match([](const TQNWError::StringEncodingFailed&) {},
              [](const TQNWError::JsonDecodeFailed&) {},
              [](const TQNWError::ObjectDecodeFailed&) {}, [](const TQNWError::Common&) {},
              [](const TQNWError::NoData&) {});
#endif
}
