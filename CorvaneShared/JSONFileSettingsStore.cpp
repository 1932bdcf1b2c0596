#include "CorvaneShared/JSONFileSettingsStore.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <utility>

#include "Foundation/BoundedFileRead.h"
#include "Foundation/FileDescriptor.h"
#include "Foundation/FileReplacement.h"

namespace corvane {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view lockSuffix = ".lock";
constexpr std::string_view backupInfix = ".corrupt-";
constexpr std::string_view backupTimestampPattern = "YYYYMMDDTHHMMSSZ";
// Backups made within one second get "-1" … "-999"; beyond that the write fails rather than
// overwrite one.
constexpr int backupsPerSecond = 1000;
constexpr std::size_t longestBackupSuffix =
    backupInfix.size() + backupTimestampPattern.size() + std::string_view("-999").size();
static_assert(JSONFileSettingsStore::maximumFileNameLength + longestBackupSuffix == NAME_MAX);
static_assert(lockSuffix.size() <= longestBackupSuffix);
static_assert(replacementTemporarySuffix.size() <= longestBackupSuffix);

// A missing file has the default identity.
struct FileIdentity {
    bool exists = false;
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::int64_t modifiedSeconds = 0;
    std::int64_t modifiedNanoseconds = 0;

    bool operator==(const FileIdentity&) const = default;
};

FileIdentity identityOf(const struct stat& status) {
    return {
        .exists = true,
        .device = status.st_dev,
        .inode = status.st_ino,
        .size = status.st_size,
        .modifiedSeconds = status.st_mtim.tv_sec,
        .modifiedNanoseconds = status.st_mtim.tv_nsec,
    };
}

enum class FileState {
    missing,
    readable,
    corrupt,
    // Exists but cannot be read: reads as empty, but no write may replace what we cannot see.
    unreadable,
};

struct FileSnapshot {
    FileState state = FileState::missing;
    SettingValue values = SettingValue::object();
    // The file that was read, kept open: while it is, the kernel cannot hand its inode number to
    // a new file, so (device, inode) identifies it even when several replacements land within
    // one timestamp tick with equal sizes.
    FileDescriptor descriptor;
    std::optional<struct stat> status;
};

// Whether `value` has more than `levels` levels of arrays and objects. The recursion stops at
// the limit, so a value of any depth is safe to check.
bool nestsDeeperThan(const SettingValue& value, int levels) {
    if (!value.is_structured()) {
        return false;
    }
    if (levels == 0) {
        return true;
    }
    return std::any_of(value.begin(), value.end(), [levels](const SettingValue& member) {
        return nestsDeeperThan(member, levels - 1);
    });
}

FileSnapshot readSnapshot(const fs::path& path) {
    FileSnapshot snapshot;
    // O_NONBLOCK keeps a FIFO put in the file's place from hanging the reader.
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen()) {
        snapshot.state =
            errno == ENOENT || errno == ENOTDIR ? FileState::missing : FileState::unreadable;
        return snapshot;
    }
    struct stat status {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        snapshot.state = FileState::unreadable;
        return snapshot;
    }
    std::optional<std::string> bytes =
        readAtMost(file.get(), JSONFileSettingsStore::maximumFileBytes + 1);
    if (!bytes) {
        snapshot.state = FileState::unreadable;
        return snapshot;
    }
    snapshot.status = status;
    snapshot.descriptor = std::move(file);
    std::optional<SettingValue> values = bytes->size() > JSONFileSettingsStore::maximumFileBytes
                                             ? std::nullopt
                                             : JSONFileSettingsStore::parseContents(*bytes);
    if (!values) {
        snapshot.state = FileState::corrupt;
        return snapshot;
    }
    snapshot.state = FileState::readable;
    snapshot.values = std::move(*values);
    return snapshot;
}

SettingValue valueUnder(const SettingValue& values, std::string_view key) {
    auto found = values.find(key);
    return found == values.end() ? SettingValue() : *found;
}

// JSON equality treats 1 and 1.0 as equal, but a float must stay a float once written, so a
// change of number kind counts as a change. Signed and unsigned integers are one kind: the
// parser reads every non-negative integer as unsigned.
SettingValue::value_t kindOf(const SettingValue& value) {
    return value.is_number_unsigned() ? SettingValue::value_t::number_integer : value.type();
}

bool isIdentical(const SettingValue& a, const SettingValue& b) {
    if (kindOf(a) != kindOf(b) || a.size() != b.size()) {
        return false;
    }
    if (!a.is_structured()) {
        return a == b;
    }
    // Objects iterate in key order, so equal objects pair their members up one by one.
    for (auto left = a.begin(), right = b.begin(); left != a.end(); ++left, ++right) {
        if ((a.is_object() && left.key() != right.key()) || !isIdentical(*left, *right)) {
            return false;
        }
    }
    return true;
}

void applyChange(SettingValue& values, std::string_view key, const SettingValue& value) {
    if (value.is_null()) {
        values.erase(std::string(key));
    } else {
        values[std::string(key)] = value;
    }
}

// New folders get 0700: settings are private to their user.
bool createDirectories(const fs::path& directory) {
    if (directory.empty()) {
        return true;
    }
    struct stat status {};
    if (::stat(directory.c_str(), &status) == 0) {
        return S_ISDIR(status.st_mode);
    }
    if (directory.has_relative_path() && !createDirectories(directory.parent_path())) {
        return false;
    }
    if (::mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST) {
        return false;
    }
    return ::stat(directory.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The lock file is never removed: removing it would let a second writer lock a fresh file
// while the first still holds the old one.
FileDescriptor lockExclusively(const std::string& lockPath) {
    FileDescriptor lock(::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!lock.isOpen()) {
        return {};
    }
    while (::flock(lock.get(), LOCK_EX) != 0) {
        if (errno != EINTR) {
            return {};
        }
    }
    return lock;
}

std::string utcTimestamp() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    char text[32];
    if (::gmtime_r(&now, &parts) == nullptr ||
        std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &parts) !=
            backupTimestampPattern.size()) {
        return std::string(backupTimestampPattern);
    }
    return text;
}

bool copyContents(int source, int destination) {
    char buffer[64 * 1024];
    off_t offset = 0;
    while (true) {
        const ssize_t got = ::pread(source, buffer, sizeof buffer, offset);
        if (got < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        if (got == 0) {
            return true;
        }
        if (!writeAll(destination, std::string_view(buffer, static_cast<std::size_t>(got)))) {
            return false;
        }
        offset += got;
    }
}

// Copies the corrupt file beside itself under a name no earlier copy has, so that repeated
// corruption never loses an earlier copy.
bool backUpCorruptFile(const fs::path& path, int source) {
    const std::string base = path.string() + std::string(backupInfix) + utcTimestamp();
    for (int attempt = 0; attempt < backupsPerSecond; ++attempt) {
        const std::string name = attempt == 0 ? base : base + "-" + std::to_string(attempt);
        FileDescriptor backup(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (!backup.isOpen()) {
            if (errno == EEXIST) {
                continue;
            }
            return false;
        }
        if (copyContents(source, backup.get()) && ::fsync(backup.get()) == 0) {
            return true;
        }
        ::unlink(name.c_str());
        return false;
    }
    return false;
}

// The file's text: indented for people who edit it by hand, unless the indentation alone would
// take it past what a read accepts. Absent when even the compact text is too large.
std::optional<std::string> fileText(const SettingValue& values) {
    for (const int indent : {4, -1}) {
        // Invalid UTF-8 in a stored string becomes U+FFFD instead of failing the write.
        std::string text = values.dump(indent, ' ', false, SettingValue::error_handler_t::replace);
        text += '\n';
        if (text.size() <= JSONFileSettingsStore::maximumFileBytes) {
            return text;
        }
    }
    return std::nullopt;
}

// Writes `values` to a temporary file beside `path` and renames it into place, so readers see
// either the old file or the new one, never a part of it.
std::optional<FileSnapshot> replaceFile(const fs::path& path, const SettingValue& values,
                                        const FileSnapshot& current) {
    std::optional<std::string> text = fileText(values);
    if (!text) {
        return std::nullopt;
    }

    const mode_t permissions = current.status ? current.status->st_mode & 0777 : 0600;
    std::optional<FileDescriptor> replaced = replaceFileContents(path, *text, permissions);
    struct stat status {};
    if (!replaced || ::fstat(replaced->get(), &status) != 0) {
        return std::nullopt;
    }

    FileSnapshot written;
    written.state = FileState::readable;
    written.values = values;
    written.descriptor = std::move(*replaced);
    written.status = status;
    return written;
}

}  // namespace

struct JSONFileSettingsStore::Cache {
    // False until a read succeeded, and again after a read failed, so the next read retries.
    bool isValid = false;
    FileIdentity identity;
    SettingValue values = SettingValue::object();
    FileDescriptor descriptor;

    void adopt(FileSnapshot snapshot) {
        isValid = snapshot.state != FileState::unreadable;
        identity = snapshot.status ? identityOf(*snapshot.status) : FileIdentity{};
        values = std::move(snapshot.values);
        descriptor = std::move(snapshot.descriptor);
    }
};

std::optional<SettingValue> JSONFileSettingsStore::parseContents(std::string_view text) {
    // An empty file holds nothing to lose, so it reads as an empty object rather than as corrupt.
    if (text.empty()) {
        return SettingValue::object();
    }
    // Copying, comparing and printing a value recurse once per level, so a value nested a few
    // thousand levels deep overflows the stack of whoever touches it. The parser does not
    // recurse; it only notes here that the limit was passed, and drops what lies below.
    bool tooDeep = false;
    const auto limitNesting = [&tooDeep](int depth, SettingValue::parse_event_t event,
                                         SettingValue&) {
        const bool opens = event == SettingValue::parse_event_t::object_start ||
                           event == SettingValue::parse_event_t::array_start;
        if (opens && depth >= maximumNesting) {
            tooDeep = true;
            return false;
        }
        return true;
    };
    SettingValue parsed = SettingValue::parse(text.begin(), text.end(), limitNesting, false);
    if (tooDeep || parsed.is_discarded() || !parsed.is_object()) {
        return std::nullopt;
    }
    return parsed;
}

JSONFileSettingsStore::JSONFileSettingsStore(std::filesystem::path path)
    : filePath(std::move(path)), cache(std::make_unique<Cache>()) {}

JSONFileSettingsStore::~JSONFileSettingsStore() = default;

void JSONFileSettingsStore::refresh() const {
    struct stat status {};
    const FileIdentity identity =
        ::stat(filePath.c_str(), &status) == 0 ? identityOf(status) : FileIdentity{};
    if (cache->isValid && identity == cache->identity) {
        return;
    }
    cache->adopt(readSnapshot(filePath));
}

SettingValue JSONFileSettingsStore::storedValues() const {
    std::lock_guard lock(mutex);
    refresh();
    return cache->values;
}

SettingValue JSONFileSettingsStore::storedValue(std::string_view key) const {
    std::lock_guard lock(mutex);
    refresh();
    return valueUnder(cache->values, key);
}

bool JSONFileSettingsStore::set(std::string_view key, const SettingValue& value) {
    // The file's object is the first level: a value as deep as the limit would give a file that
    // reads back as corrupt.
    if (nestsDeeperThan(value, maximumNesting - 1)) {
        return false;
    }
    std::lock_guard lock(mutex);
    refresh();
    // An equal value needs no write: it is as if this write happened at the moment of the read.
    if (cache->isValid && isIdentical(valueUnder(cache->values, key), value)) {
        return true;
    }
    if (!createDirectories(filePath.parent_path())) {
        return false;
    }
    FileDescriptor fileLock = lockExclusively(filePath.string() + std::string(lockSuffix));
    if (!fileLock.isOpen()) {
        return false;
    }
    // Another process may have written since our last read; the change applies to what is
    // there now, under the lock, so neither writer loses the other's keys.
    FileSnapshot current = readSnapshot(filePath);
    if (current.state == FileState::unreadable) {
        cache->adopt(std::move(current));
        return false;
    }
    SettingValue updated = current.values;
    applyChange(updated, key, value);
    if (isIdentical(updated, current.values)) {
        cache->adopt(std::move(current));
        return true;
    }
    if (current.state == FileState::corrupt &&
        !backUpCorruptFile(filePath, current.descriptor.get())) {
        cache->adopt(std::move(current));
        return false;
    }
    std::optional<FileSnapshot> written = replaceFile(filePath, updated, current);
    cache->adopt(written ? std::move(*written) : std::move(current));
    return written.has_value();
}

}  // namespace corvane
