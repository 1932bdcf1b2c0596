#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string_view>

#include "CorvaneShared/SettingsStore.h"

namespace corvane {

/// A settings store kept as one JSON object in a file that other processes read and write too.
/// Every read sees the file as it is now (one `stat` per read, a re-parse only when the file
/// changed); every write is a locked read-modify-replace, so concurrent writers of different
/// keys keep each other's keys and no reader sees a partly written file. A missing file reads
/// as empty; so does a corrupt one, which is copied beside itself before a write replaces it.
/// Never throws or logs; thread-safe.
class JSONFileSettingsStore final : public SettingsStore {
public:
    /// The longest file name (`<name>.json`) for which every name the store derives from it —
    /// lock file, temporary file, backup copies — still fits in a directory entry (255 bytes).
    static constexpr std::size_t maximumFileNameLength = 226;

    /// A file larger than this reads as corrupt. Settings take a few kilobytes; the bound only
    /// keeps a runaway file from exhausting memory.
    static constexpr std::size_t maximumFileBytes = 16 * 1024 * 1024;

    /// A store on `path`. Touches nothing until the first read or write; the directory is
    /// created by the first write that needs it.
    explicit JSONFileSettingsStore(std::filesystem::path path);
    ~JSONFileSettingsStore() override;

    JSONFileSettingsStore(const JSONFileSettingsStore&) = delete;
    JSONFileSettingsStore& operator=(const JSONFileSettingsStore&) = delete;

    /// The settings file.
    const std::filesystem::path& path() const { return filePath; }

    /// False when the change could not be persisted (the directory cannot be created, the file
    /// exists but cannot be read, the disk is full); the file is then left as it was.
    bool set(std::string_view key, const SettingValue& value) override;
    /// The file's object as it is now; empty when the file is missing or corrupt.
    SettingValue storedValues() const override;

protected:
    SettingValue storedValue(std::string_view key) const override;

private:
    struct Cache;

    void refresh() const;

    std::filesystem::path filePath;
    mutable std::mutex mutex;
    std::unique_ptr<Cache> cache;
};

}  // namespace corvane
