// The archive module: ArchiveSignature and ArchiveUnpacker behind the C table of
// ArchiveModuleInterface.h. Only the entry point is exported.

#include <exception>
#include <optional>
#include <string>

#include "Platform/Updates/ArchiveModuleInterface.h"
#include "Platform/Updates/ArchiveSignature.h"
#include "Platform/Updates/ArchiveUnpacker.h"

namespace {

using corvane::UpdateFailure;

// Nothing may leave the module as an exception: the agent's side is C.
template <typename Work>
int reportingFailures(CorvaneArchiveReport report, void* context, Work work) {
    std::optional<UpdateFailure> failure;
    try {
        failure = work();
    } catch (const std::exception& error) {
        failure = UpdateFailure{std::string("the update cannot be checked: ") + error.what()};
    } catch (...) {
        failure = UpdateFailure{"the update cannot be checked"};
    }
    if (!failure) {
        return 0;
    }
    report(context, failure->description.data(), failure->description.size());
    return 1;
}

int verify(const char* archive, size_t archiveLength, const char* signature, size_t signatureLength,
           const char* publicKey, size_t publicKeyLength, CorvaneArchiveReport report,
           void* context) {
    return reportingFailures(report, context, [&] {
        return corvane::ArchiveSignature::verify(
            {archive, archiveLength}, {signature, signatureLength}, {publicKey, publicKeyLength});
    });
}

int unpack(const char* archive, size_t archiveLength, const char* folder,
           CorvaneArchiveReport report, void* context) {
    return reportingFailures(report, context, [&] {
        return corvane::ArchiveUnpacker::unpack({archive, archiveLength},
                                                std::filesystem::path(folder));
    });
}

constexpr CorvaneArchiveModule table{
    .version = CORVANE_ARCHIVE_MODULE_VERSION,
    .verify = verify,
    .unpack = unpack,
};

}  // namespace

extern "C" __attribute__((visibility("default"))) const CorvaneArchiveModule*
corvane_archive_module() {
    return &table;
}
