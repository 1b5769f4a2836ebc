#include "platform/Foundation/FileManager.hpp"

#import <Foundation/Foundation.h>

#include "platform/Foundation/JSONEncoder.hpp"
#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace Foundation {

namespace {

using Outcome = std::optional<NSError>;

NSError fileError(NSFileErrorCode code, const URL& url) {
  NSError::UserInfo userInfo;
  userInfo.emplace(kFilePathErrorKey, url.isFileURL() ? url.path() : url.absoluteString());
  return {std::string(NSCocoaErrorDomain), code, std::move(userInfo)};
}

// Why the system could not even be asked about that address.
Outcome problemOf(const URL& url) {
  if (!url.isFileURL()) return fileError(NSFileWriteUnsupportedSchemeError, url);
  const auto path = url.path();
  if (!path.empty() && path.find('\0') == std::string::npos) return std::nullopt;
  return fileError(NSFileWriteInvalidFileNameError, url);
}

NSString* nativePath(const URL& url) { return nativeText(url.path()); }

// `work` answers whether it went well, and leaves an error if it did not.
template <class Work>
Outcome change(const URL& url, Work work) {
  if (auto problem = problemOf(url)) return problem;
  const auto unknown = fileError(NSFileWriteUnknownError, url);
  return askPlatform("FileManager", unknown, [&]() -> Outcome {
    ::NSError* error = nil;
    if (work([NSFileManager defaultManager], &error)) return std::nullopt;
    return error != nil ? errorFrom(error) : unknown;
  });
}

// What stands at an address, symbolic links included; nil for nothing.
NSDictionary* attributesOf(const URL& url) {
  return [[NSFileManager defaultManager] attributesOfItemAtPath:nativePath(url) error:nullptr];
}

bool isThere(const URL& url) {
  return askPlatform("FileManager", true, [&] { return attributesOf(url) != nil; });
}

bool areOnOneVolume(const URL& a, const URL& b) {
  return askPlatform("FileManager", true, [&] {
    const id volume = [attributesOf(a) objectForKey:NSFileSystemNumber];
    const id other = [attributesOf(b) objectForKey:NSFileSystemNumber];
    return volume == nil || other == nil || [volume isEqual:other] != NO;
  });
}

}  // namespace

FileManager& FileManager::defaultManager() {
  static auto& manager = *new FileManager;
  return manager;
}

FileManager::Kind FileManager::kind(std::string_view path) const {
  if (path.empty() || path.find('\0') != std::string_view::npos) return Kind::nothing;
  return askPlatform("FileManager::kind", Kind::nothing, [path] {
    BOOL isFolder = NO;
    const bool isThere = [[NSFileManager defaultManager] fileExistsAtPath:nativeText(path)
                                                              isDirectory:&isFolder] != NO;
    if (!isThere) return Kind::nothing;
    return isFolder != NO ? Kind::folder : Kind::file;
  });
}

Outcome FileManager::removeItem(const URL& url) {
  return change(url, [&](NSFileManager* manager, ::NSError** error) {
    return [manager removeItemAtPath:nativePath(url) error:error] != NO;
  });
}

Outcome FileManager::createDirectory(const URL& url, bool withIntermediateDirectories) {
  return change(url, [&](NSFileManager* manager, ::NSError** error) {
    return [manager createDirectoryAtPath:nativePath(url)
               withIntermediateDirectories:withIntermediateDirectories ? YES : NO
                                attributes:nil
                                     error:error] != NO;
  });
}

Outcome FileManager::copyItem(const URL& from, const URL& to) {
  if (auto problem = problemOf(to)) return problem;
  if (isThere(to)) return fileError(NSFileWriteFileExistsError, to);
  auto failure = change(from, [&](NSFileManager* manager, ::NSError** error) {
    return [manager copyItemAtPath:nativePath(from) toPath:nativePath(to) error:error] != NO;
  });
  if (failure && isThere(to)) (void)removeItem(to);
  return failure;
}

namespace {

// A file that can't be removed is left alone in its old place. Of a folder, part may be gone by
// then: its copy stays.
Outcome moveToOtherVolume(const URL& from, const URL& to) {
  auto& manager = FileManager::defaultManager();
  if (auto failure = manager.copyItem(from, to)) return failure;
  auto failure = manager.removeItem(from);
  if (failure && manager.kind(from.path()) == FileManager::Kind::file) (void)manager.removeItem(to);
  return failure;
}

}  // namespace

Outcome FileManager::moveItem(const URL& from, const URL& to) {
  if (auto problem = problemOf(to)) return problem;
  if (isThere(to)) return fileError(NSFileWriteFileExistsError, to);
  if (!areOnOneVolume(from, to.deletingLastPathComponent())) return moveToOtherVolume(from, to);
  return change(from, [&](NSFileManager* manager, ::NSError** error) {
    return [manager moveItemAtPath:nativePath(from) toPath:nativePath(to) error:error] != NO;
  });
}

}  // namespace Foundation
