#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Platform/Linux/KernelFileReader.h"
#include "Platform/SMCTransport.h"

namespace corvane {

/// The controller of an Intel Mac through the kernel's applesmc driver
/// (devices/platform/applesmc.768). The driver looks up no key by name: it offers one window,
/// pointed at a key by writing its index to key_at_index (root only), through which that key's
/// name, type, size and raw value are read. The transport lists every key's name once, when
/// opened, and answers the three commands through the window. One call at a time.
class ApplesmcTransport final : public SMCTransport {
public:
    /// Runs after every index written to key_at_index, before the window's files are read. The
    /// driver answers such a write by itself; a fixture tree has no driver, so a test fills the
    /// window's files here.
    using IndexWritten = std::function<void()>;

    /// The driver's device under the sysfs root `sysfs` ("/sys"). Absent when the device folder
    /// is missing or key_at_index cannot be opened for writing.
    [[nodiscard]] static std::unique_ptr<ApplesmcTransport> open(const std::filesystem::path& sysfs,
                                                                 IndexWritten indexWritten = {});

    /// Key information and values through the window; the key at an index from the names
    /// listed when opened. "#KEY" is answered from key_count when the driver does not list it.
    int call(const SMCRecord& input, SMCRecord& output) override;

private:
    ApplesmcTransport(const std::filesystem::path& device, IndexWritten indexWritten);

    void listKeys();
    /// Points the window at `index`.
    bool select(std::uint32_t index);
    /// Points the window at `key`; false when the driver does not list it or has moved on.
    bool selectKey(std::uint32_t key);
    /// True when the window still shows `key`.
    bool windowShows(std::uint32_t key);
    int answerKeyInfo(std::uint32_t key, SMCKeyData& answer);
    int answerBytes(std::uint32_t key, std::uint32_t size, SMCKeyData& answer);

    std::string keyCountPath;
    std::string indexPath;
    std::string namePath;
    std::string typePath;
    std::string lengthPath;
    std::string dataPath;
    IndexWritten indexWritten;
    KernelFileReader reader;

    std::uint32_t keyCount = 0;
    /// The key at each index; absent where the driver could not name it.
    std::vector<std::optional<std::uint32_t>> names;
    std::unordered_map<std::uint32_t, std::uint32_t> indices;
};

/// A number the driver prints with "%d\n" (key_count, key_at_index_data_length); absent for
/// anything but a non-negative decimal.
[[nodiscard]] std::optional<std::uint32_t> parseApplesmcNumber(std::string_view text);

/// A key or type the driver prints with "%s\n": exactly four bytes before the newline, trailing
/// blanks kept ("flt " is a type).
[[nodiscard]] std::optional<std::uint32_t> parseApplesmcCode(std::string_view text);

}  // namespace corvane
