// Archive modules the loader must refuse: one from a build of another version
// (CORVANE_FOREIGN_VERSION) and, without it, one that lacks the entry point.

#include "Platform/Updates/ArchiveModuleInterface.h"

#ifdef CORVANE_FOREIGN_VERSION
namespace {

int refuse(const char*, size_t, const char*, size_t, const char*, size_t, CorvaneArchiveReport,
           void*) {
    return 1;
}

int refuseUnpack(const char*, size_t, const char*, CorvaneArchiveReport, void*) {
    return 1;
}

constexpr CorvaneArchiveModule table{
    .version = CORVANE_FOREIGN_VERSION, .verify = refuse, .unpack = refuseUnpack};

}  // namespace

extern "C" __attribute__((visibility("default"))) const CorvaneArchiveModule*
corvane_archive_module() {
    return &table;
}
#else
extern "C" int corvane_archive_module_renamed();

extern "C" __attribute__((visibility("default"))) int corvane_archive_module_renamed() {
    return 0;
}
#endif
