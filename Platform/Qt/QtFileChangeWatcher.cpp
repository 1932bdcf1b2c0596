#include "Platform/Qt/QtFileChangeWatcher.h"

#include <QFileSystemWatcher>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <system_error>
#include <utility>

namespace corvane {

namespace fs = std::filesystem;

class QtFileChangeWatcher::Watch {
public:
    Watch(fs::path file, std::chrono::milliseconds settle, std::function<void()> onChange)
        : file(std::move(file)), onChange(std::move(onChange)) {
        settleTimer.setSingleShot(true);
        settleTimer.setInterval(settle);
        QObject::connect(&settleTimer, &QTimer::timeout, &settleTimer, [this] {
            rewatch();
            this->onChange();
        });
        QObject::connect(&watcher, &QFileSystemWatcher::fileChanged, &settleTimer,
                         [this] { eventArrived(); });
        QObject::connect(&watcher, &QFileSystemWatcher::directoryChanged, &settleTimer,
                         [this] { eventArrived(); });
        rewatch();
    }

private:
    // Not restarted by later events, so that a steady stream of writes is still told about.
    void eventArrived() {
        rewatch();
        if (!settleTimer.isActive()) {
            settleTimer.start();
        }
    }

    // A watch follows an inode: after a rename the file's watch looks at the old file, and
    // after the folder is removed its watch is gone. So every event sets the watches afresh.
    void rewatch() {
        const QStringList watched = watcher.files() + watcher.directories();
        if (!watched.isEmpty()) {
            watcher.removePaths(watched);
        }
        QStringList wanted;
        std::error_code error;
        if (fs::exists(file, error)) {
            wanted.append(QString::fromStdString(file.string()));
        }
        for (fs::path folder = file.parent_path(); !folder.empty(); folder = folder.parent_path()) {
            if (fs::is_directory(folder, error)) {
                wanted.append(QString::fromStdString(folder.string()));
                break;
            }
            if (folder == folder.root_path()) {
                break;
            }
        }
        if (!wanted.isEmpty()) {
            watcher.addPaths(wanted);
        }
    }

    fs::path file;
    std::function<void()> onChange;
    QFileSystemWatcher watcher;
    QTimer settleTimer;
};

QtFileChangeWatcher::QtFileChangeWatcher(fs::path file, std::chrono::milliseconds settle,
                                         std::function<void()> onChange)
    : watch(std::make_unique<Watch>(std::move(file), settle, std::move(onChange))) {}

QtFileChangeWatcher::~QtFileChangeWatcher() = default;

}  // namespace corvane
