#include "Platform/Linux/ApplesmcTransport.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <limits>
#include <system_error>

#include "Foundation/NumberParsing.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

constexpr std::uint32_t fourCharCode(std::string_view text) {
    std::uint32_t code = 0;
    for (const char c : text) {
        code = code * 256 + static_cast<unsigned char>(c);
    }
    return code;
}

constexpr std::uint32_t keyCountKey = fourCharCode("#KEY");
constexpr std::uint32_t ui32Type = fourCharCode("ui32");

// key_count is the controller's own "#KEY"; a garbled one must not keep the listing going for
// billions of writes. Real controllers hold a few thousand keys at most.
constexpr std::uint32_t largestListing = 65536;

constexpr int notListed = 1;
constexpr int windowFailed = 2;
constexpr int unsupportedCommand = 3;

std::string_view withoutNewline(std::string_view text) {
    if (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    return text;
}

// Opens, writes and closes each time, as `echo N > key_at_index` does; a descriptor kept open
// would write each index at a growing offset into a plain file.
bool writeIndex(const std::string& path, std::uint32_t index) {
    char text[16];
    auto [end, error] = std::to_chars(text, text + sizeof(text) - 1, index);
    if (error != std::errc{}) {
        return false;
    }
    *end++ = '\n';
    const auto length = end - text;
    const int file = ::open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NOCTTY);
    if (file < 0) {
        return false;
    }
    ssize_t written = 0;
    do {
        written = ::write(file, text, static_cast<std::size_t>(length));
    } while (written < 0 && errno == EINTR);
    ::close(file);
    return written == length;
}

}  // namespace

std::optional<std::uint32_t> parseApplesmcNumber(std::string_view text) {
    return parseNumber<std::uint32_t>(withoutNewline(text));
}

std::optional<std::uint32_t> parseApplesmcCode(std::string_view text) {
    text = withoutNewline(text);
    if (text.size() != 4) {
        return std::nullopt;
    }
    return fourCharCode(text);
}

ApplesmcTransport::ApplesmcTransport(const std::filesystem::path& device, IndexWritten indexWritten)
    : keyCountPath(device / "key_count"),
      indexPath(device / "key_at_index"),
      namePath(device / "key_at_index_name"),
      typePath(device / "key_at_index_type"),
      lengthPath(device / "key_at_index_data_length"),
      dataPath(device / "key_at_index_data"),
      indexWritten(std::move(indexWritten)) {}

std::unique_ptr<ApplesmcTransport> ApplesmcTransport::open(const std::filesystem::path& sysfs,
                                                           IndexWritten indexWritten) {
    const auto device = sysfs / "devices/platform/applesmc.768";
    std::error_code error;
    if (!std::filesystem::is_directory(device, error)) {
        return nullptr;
    }
    const auto index = (device / "key_at_index").string();
    const int file = ::open(index.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (file < 0) {
        return nullptr;
    }
    ::close(file);
    std::unique_ptr<ApplesmcTransport> transport(
        new ApplesmcTransport(device, std::move(indexWritten)));
    transport->listKeys();
    return transport;
}

void ApplesmcTransport::listKeys() {
    const auto count = reader.read(keyCountPath.c_str());
    keyCount = count ? parseApplesmcNumber(*count).value_or(0) : 0;
    names.assign(std::min(keyCount, largestListing), std::nullopt);
    for (std::uint32_t index = 0; index < names.size(); ++index) {
        if (!select(index)) {
            continue;
        }
        const auto name = reader.read(namePath.c_str());
        if (const auto key = name ? parseApplesmcCode(*name) : std::nullopt) {
            names[index] = key;
            indices.emplace(*key, index);
        }
    }
}

bool ApplesmcTransport::select(std::uint32_t index) {
    if (!writeIndex(indexPath, index)) {
        return false;
    }
    if (indexWritten) {
        indexWritten();
    }
    return true;
}

bool ApplesmcTransport::selectKey(std::uint32_t key) {
    const auto found = indices.find(key);
    return found != indices.end() && select(found->second);
}

// key_at_index is one setting for the whole system, so another program writing it between our
// write and our reads would show us another key; reading the name back catches that.
bool ApplesmcTransport::windowShows(std::uint32_t key) {
    const auto name = reader.read(namePath.c_str());
    return name && parseApplesmcCode(*name) == key;
}

int ApplesmcTransport::answerKeyInfo(std::uint32_t key, SMCKeyData& answer) {
    if (!indices.contains(key)) {
        if (key != keyCountKey) {
            return notListed;
        }
        answer.keyInfo.dataSize = 4;
        answer.keyInfo.dataType = ui32Type;
        return 0;
    }
    if (!selectKey(key)) {
        return windowFailed;
    }
    const auto typeText = reader.read(typePath.c_str());
    const auto type = typeText ? parseApplesmcCode(*typeText) : std::nullopt;
    const auto lengthText = reader.read(lengthPath.c_str());
    const auto length = lengthText ? parseApplesmcNumber(*lengthText) : std::nullopt;
    if (!type || !length || !windowShows(key)) {
        return windowFailed;
    }
    answer.keyInfo.dataSize = *length;
    answer.keyInfo.dataType = *type;
    return 0;
}

int ApplesmcTransport::answerBytes(std::uint32_t key, std::uint32_t size, SMCKeyData& answer) {
    if (!indices.contains(key)) {
        if (key != keyCountKey) {
            return notListed;
        }
        for (std::size_t i = 0; i < 4; ++i) {
            answer.bytes[i] = static_cast<std::uint8_t>(keyCount >> (8 * (3 - i)));
        }
        return 0;
    }
    if (!selectKey(key)) {
        return windowFailed;
    }
    // key_at_index_data holds the value's raw bytes, not text.
    const auto data = reader.read(dataPath.c_str());
    if (!data) {
        return windowFailed;
    }
    const auto count = std::min<std::size_t>({data->size(), size, answer.bytes.size()});
    std::copy_n(reinterpret_cast<const std::uint8_t*>(data->data()), count, answer.bytes.begin());
    return windowShows(key) ? 0 : windowFailed;
}

int ApplesmcTransport::call(const SMCRecord& input, SMCRecord& output) {
    const auto request = decodeSMCKeyData(input);
    SMCKeyData answer;
    answer.key = request.key;
    int status = 0;
    switch (request.data8) {
        case SMCCommand::readKeyInfo: status = answerKeyInfo(request.key, answer); break;
        case SMCCommand::readBytes:
            status = answerBytes(request.key, request.keyInfo.dataSize, answer);
            break;
        case SMCCommand::keyAtIndex:
            if (request.data32 >= names.size() || !names[request.data32]) {
                return notListed;
            }
            answer.key = *names[request.data32];
            break;
        default: return unsupportedCommand;
    }
    if (status == 0) {
        output = encodeSMCKeyData(answer);
    }
    return status;
}

}  // namespace corvane
