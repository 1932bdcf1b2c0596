#include "Platform/Updates/ArchiveModule.h"

#include <dlfcn.h>

#include <string>
#include <system_error>
#include <utility>

#include "Platform/Updates/ArchiveModuleInterface.h"

#ifndef CORVANE_ARCHIVE_MODULE_IN_BUNDLE
#error "CORVANE_ARCHIVE_MODULE_IN_BUNDLE (the module's path inside a bundle) is not set"
#endif

namespace corvane {

namespace {

void appendReport(void* context, const char* text, std::size_t length) {
    static_cast<std::string*>(context)->append(text, length);
}

UpdateFailure refusal(std::string reason) {
    if (reason.empty()) {
        reason = "the archive module refused the update without saying why";
    }
    return UpdateFailure{std::move(reason)};
}

UpdateFailure moduleFailure(const std::filesystem::path& file, const std::string& what) {
    return UpdateFailure{"the update cannot be installed: its archive module " + file.string() +
                         " " + what};
}

}  // namespace

std::filesystem::path ArchiveModule::pathIn(const std::filesystem::path& bundle) {
    return bundle / CORVANE_ARCHIVE_MODULE_IN_BUNDLE;
}

std::variant<ArchiveModule, UpdateFailure> ArchiveModule::load(const std::filesystem::path& file) {
    if (file.empty()) {
        return UpdateFailure{
            "the update cannot be installed: the agent does not run from a bundle that holds "
            "its archive module"};
    }
    // dlopen's own message for a missing file is a bare "cannot open shared object file".
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        return moduleFailure(file, "is missing (reinstall Corvane)");
    }
    // A path with a '/' is opened as it is, never searched for; RTLD_LOCAL keeps libsodium's
    // and libarchive's symbols to the module.
    void* handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* reason = ::dlerror();
        return moduleFailure(file, std::string("cannot be loaded: ") +
                                       (reason != nullptr ? reason : "unknown error"));
    }
    ArchiveModule loaded(handle, nullptr);
    const auto entry =
        reinterpret_cast<CorvaneArchiveModuleEntry>(::dlsym(handle, CORVANE_ARCHIVE_MODULE_ENTRY));
    if (entry == nullptr) {
        return moduleFailure(file, "has no entry point " CORVANE_ARCHIVE_MODULE_ENTRY);
    }
    loaded.table = entry();
    if (loaded.table == nullptr || loaded.table->version != CORVANE_ARCHIVE_MODULE_VERSION) {
        return moduleFailure(
            file, "is version " +
                      (loaded.table != nullptr ? std::to_string(loaded.table->version)
                                               : std::string("(none)")) +
                      ", where this Corvane needs version " +
                      std::to_string(CORVANE_ARCHIVE_MODULE_VERSION) + " (reinstall Corvane)");
    }
    return loaded;
}

ArchiveModule::ArchiveModule(ArchiveModule&& other) noexcept
    : handle(std::exchange(other.handle, nullptr)), table(std::exchange(other.table, nullptr)) {}

ArchiveModule& ArchiveModule::operator=(ArchiveModule&& other) noexcept {
    if (this != &other) {
        if (handle != nullptr) {
            ::dlclose(handle);
        }
        handle = std::exchange(other.handle, nullptr);
        table = std::exchange(other.table, nullptr);
    }
    return *this;
}

ArchiveModule::~ArchiveModule() {
    if (handle != nullptr) {
        ::dlclose(handle);
    }
}

std::optional<UpdateFailure> ArchiveModule::verify(std::string_view archive,
                                                   std::string_view signatureBase64,
                                                   std::string_view publicKeyBase64) const {
    std::string reason;
    if (table->verify(archive.data(), archive.size(), signatureBase64.data(),
                      signatureBase64.size(), publicKeyBase64.data(), publicKeyBase64.size(),
                      appendReport, &reason) == 0) {
        return std::nullopt;
    }
    return refusal(std::move(reason));
}

std::optional<UpdateFailure> ArchiveModule::unpack(std::string_view archive,
                                                   const std::filesystem::path& folder) const {
    std::string reason;
    if (table->unpack(archive.data(), archive.size(), folder.c_str(), appendReport, &reason) == 0) {
        return std::nullopt;
    }
    return refusal(std::move(reason));
}

}  // namespace corvane
