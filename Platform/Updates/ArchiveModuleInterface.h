#pragma once

// The one entry point of the archive module (corvane-update-archive.so), the loadable module
// that holds the update code needing libsodium and libarchive. It is plain C so that nothing
// but this table crosses between the agent and the module: no C++ types, no exceptions.

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Raised whenever a member of the table, or what one means, changes. The loader refuses a
/// module of another version.
#define CORVANE_ARCHIVE_MODULE_VERSION 1u

/// The name the loader looks the table up by.
#define CORVANE_ARCHIVE_MODULE_ENTRY "corvane_archive_module"

/// Receives the reason of a refusal: `length` bytes of text at `text` (not NUL-terminated),
/// valid only during the call.
typedef void (*CorvaneArchiveReport)(void* context, const char* text, size_t length);

struct CorvaneArchiveModule {
    /// CORVANE_ARCHIVE_MODULE_VERSION of the build the module comes from. First, so that any
    /// version can read it.
    uint32_t version;
    /// 0 when `signature` (base64) is a valid Ed25519 signature of the archive by
    /// `publicKey` (base64); otherwise reports why once and answers 1.
    int (*verify)(const char* archive, size_t archiveLength, const char* signature,
                  size_t signatureLength, const char* publicKey, size_t publicKeyLength,
                  CorvaneArchiveReport report, void* context);
    /// 0 when the archive unpacked into the existing, empty `folder` (a NUL-terminated path);
    /// otherwise reports why once and answers 1, with part of the archive possibly unpacked.
    int (*unpack)(const char* archive, size_t archiveLength, const char* folder,
                  CorvaneArchiveReport report, void* context);
};

/// The module's table; static, valid while the module is loaded.
typedef const struct CorvaneArchiveModule* (*CorvaneArchiveModuleEntry)(void);

/// The entry point itself, as the module defines it (named CORVANE_ARCHIVE_MODULE_ENTRY).
const struct CorvaneArchiveModule* corvane_archive_module(void);

#ifdef __cplusplus
}
#endif
