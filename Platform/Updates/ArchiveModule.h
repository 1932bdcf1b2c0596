#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <variant>

#include "Platform/Updates/UpdateFailure.h"

struct CorvaneArchiveModule;

namespace corvane {

/// The archive module loaded: the signature check (ArchiveSignature::verify) and the unpacking
/// (ArchiveUnpacker::unpack) of an update, with libsodium and libarchive behind them, kept out
/// of the agent until it installs an update. Loaded with dlopen when made, unloaded when it
/// goes. Move-only; use from one thread at a time.
class ArchiveModule {
public:
    /// Where the module lies inside a bundle: `<libdir>/corvane/corvane-update-archive.so`,
    /// the same in the build tree, an install prefix and the portable bundle's agent.
    static std::filesystem::path pathIn(const std::filesystem::path& bundle);

    /// The module at `file`; a failure that names the file and says what is wrong when it is
    /// missing, cannot be loaded, has no entry point or is of another version.
    static std::variant<ArchiveModule, UpdateFailure> load(const std::filesystem::path& file);

    ArchiveModule(ArchiveModule&& other) noexcept;
    ArchiveModule& operator=(ArchiveModule&& other) noexcept;
    ArchiveModule(const ArchiveModule&) = delete;
    ArchiveModule& operator=(const ArchiveModule&) = delete;
    ~ArchiveModule();

    /// ArchiveSignature::verify inside the module.
    std::optional<UpdateFailure> verify(std::string_view archive, std::string_view signatureBase64,
                                        std::string_view publicKeyBase64) const;
    /// ArchiveUnpacker::unpack inside the module.
    std::optional<UpdateFailure> unpack(std::string_view archive,
                                        const std::filesystem::path& folder) const;

private:
    ArchiveModule(void* handle, const CorvaneArchiveModule* table) : handle(handle), table(table) {}

    void* handle = nullptr;
    const CorvaneArchiveModule* table = nullptr;
};

}  // namespace corvane
