#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

namespace corvane {

/// Tells when a file may have changed, however it changes: written in place, replaced by a
/// rename (the way settings files are saved), deleted, or created again with its folder after
/// the folder was removed. Watches the file and its folder (or, while the folder is missing,
/// the nearest folder above it that exists). A burst of events is told once, `settle` after its
/// first event; the callback decides whether anything really changed. Create, use and destroy
/// on the main thread inside a QCoreApplication's lifetime; calls come from its event loop.
class QtFileChangeWatcher {
public:
    QtFileChangeWatcher(std::filesystem::path file, std::chrono::milliseconds settle,
                        std::function<void()> onChange);
    ~QtFileChangeWatcher();

    QtFileChangeWatcher(const QtFileChangeWatcher&) = delete;
    QtFileChangeWatcher& operator=(const QtFileChangeWatcher&) = delete;

private:
    class Watch;
    std::unique_ptr<Watch> watch;
};

}  // namespace corvane
