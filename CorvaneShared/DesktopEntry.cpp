#include "CorvaneShared/DesktopEntry.h"

#include <fstream>
#include <iterator>
#include <system_error>

#include "Foundation/TextTrimming.h"

namespace corvane::DesktopEntries {

namespace {

namespace fs = std::filesystem;

using Environment = SharedSettings::EnvironmentLookup;

bool isAbsolute(std::string_view directory) {
    return !directory.empty() && directory.front() == '/';
}

// The escapes of the string value type; any other backslash stays for the Exec quoting rules.
std::string unescapedValue(std::string_view value) {
    std::string result;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            result += value[i];
            continue;
        }
        switch (value[++i]) {
            case 's': result += ' '; break;
            case 'n': result += '\n'; break;
            case 't': result += '\t'; break;
            case 'r': result += '\r'; break;
            case '\\': result += '\\'; break;
            default: result += '\\'; result += value[i];
        }
    }
    return result;
}

struct Token {
    std::string text;
    bool quoted = false;
};

// Splits at unquoted spaces; inside double quotes a backslash takes the next character as is.
std::optional<std::vector<Token>> splitIntoTokens(std::string_view exec) {
    std::vector<Token> result;
    std::optional<Token> current;
    bool inQuotes = false;
    for (std::size_t i = 0; i < exec.size(); ++i) {
        const char c = exec[i];
        if (inQuotes) {
            if (c == '"') {
                inQuotes = false;
            } else if (c == '\\' && i + 1 < exec.size()) {
                current->text += exec[++i];
            } else {
                current->text += c;
            }
        } else if (c == ' ') {
            if (current) {
                result.push_back(std::move(*current));
                current.reset();
            }
        } else {
            if (!current) {
                current.emplace();
            }
            if (c == '"') {
                inQuotes = true;
                current->quoted = true;
            } else {
                current->text += c;
            }
        }
    }
    if (inQuotes) {
        return std::nullopt;
    }
    if (current) {
        result.push_back(std::move(*current));
    }
    return result;
}

// Field codes are only meaningful outside quotes; an argument left empty by removed codes is
// dropped, since the program would otherwise see an empty file name.
void appendExpanded(const Token& token, const DesktopEntry& entry,
                    std::vector<std::string>& arguments) {
    if (token.quoted) {
        arguments.push_back(token.text);
        return;
    }
    if (token.text == "%i") {
        if (!entry.icon.empty()) {
            arguments.emplace_back("--icon");
            arguments.push_back(entry.icon);
        }
        return;
    }
    std::string expanded;
    const std::string& text = token.text;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%' || i + 1 == text.size()) {
            expanded += text[i];
            continue;
        }
        switch (text[++i]) {
            case '%': expanded += '%'; break;
            case 'c': expanded += entry.name; break;
            case 'k': expanded += entry.file.string(); break;
            default: break;  // files, URLs, an icon inside an argument, deprecated codes
        }
    }
    if (!expanded.empty()) {
        arguments.push_back(std::move(expanded));
    }
}

}  // namespace

std::vector<fs::path> dataDirectories(const Environment& environment) {
    std::vector<fs::path> directories;
    const char* dataHome = environment("XDG_DATA_HOME");
    const char* home = environment("HOME");
    if (dataHome != nullptr && isAbsolute(dataHome)) {
        directories.emplace_back(dataHome);
    } else if (home != nullptr && isAbsolute(home)) {
        directories.push_back(fs::path(home) / ".local" / "share");
    }
    const char* dataDirs = environment("XDG_DATA_DIRS");
    std::string_view list =
        dataDirs != nullptr && *dataDirs != '\0' ? dataDirs : "/usr/local/share/:/usr/share/";
    while (!list.empty()) {
        const std::size_t end = list.find(':');
        if (const std::string_view directory = list.substr(0, end); isAbsolute(directory)) {
            directories.emplace_back(directory);
        }
        list = end == std::string_view::npos ? std::string_view() : list.substr(end + 1);
    }
    return directories;
}

std::optional<fs::path> find(std::string_view identifier, const Environment& environment) {
    const std::string fileName = std::string(identifier) + ".desktop";
    for (const fs::path& directory : dataDirectories(environment)) {
        const fs::path file = directory / "applications" / fileName;
        std::error_code error;
        if (!fs::is_regular_file(file, error)) {
            continue;
        }
        const std::optional<DesktopEntry> entry = read(file);
        if (entry && entry->hidden) {
            return std::nullopt;
        }
        return file;
    }
    return std::nullopt;
}

DesktopEntry parse(std::string_view text, const fs::path& file) {
    DesktopEntry entry{.file = file};
    bool inMainGroup = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.starts_with('[')) {
            inMainGroup = text::trim(line) == "[Desktop Entry]";
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!inMainGroup || line.starts_with('#') || equals == std::string_view::npos) {
            continue;
        }
        const std::string_view key = text::trim(line.substr(0, equals));
        std::string value = unescapedValue(text::trim(line.substr(equals + 1)));
        if (key == "Exec") {
            entry.exec = std::move(value);
        } else if (key == "Name") {
            entry.name = std::move(value);
        } else if (key == "Icon") {
            entry.icon = std::move(value);
        } else if (key == "Path") {
            entry.workingDirectory = std::move(value);
        } else if (key == "TryExec") {
            entry.tryExec = std::move(value);
        } else if (key == "StartupWMClass") {
            entry.startupWMClass = std::move(value);
        } else if (key == "Hidden") {
            entry.hidden = value == "true";
        } else if (key == "NoDisplay") {
            entry.noDisplay = value == "true";
        }
    }
    return entry;
}

std::optional<DesktopEntry> read(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        return std::nullopt;
    }
    const std::string text{std::istreambuf_iterator<char>(stream),
                           std::istreambuf_iterator<char>()};
    if (stream.bad()) {
        return std::nullopt;
    }
    return parse(text, file);
}

std::vector<std::string> commandLine(const DesktopEntry& entry) {
    std::vector<std::string> arguments;
    for (const Token& token : splitIntoTokens(entry.exec).value_or(std::vector<Token>{})) {
        appendExpanded(token, entry, arguments);
    }
    return arguments;
}

std::optional<DetachedLaunch> launch(const DesktopEntry& entry) {
    std::vector<std::string> arguments = commandLine(entry);
    if (arguments.empty()) {
        return std::nullopt;
    }
    DetachedLaunch request{.program = arguments.front()};
    request.arguments.assign(std::make_move_iterator(arguments.begin() + 1),
                             std::make_move_iterator(arguments.end()));
    if (!entry.workingDirectory.empty()) {
        request.workingDirectory = entry.workingDirectory;
    }
    return request;
}

}  // namespace corvane::DesktopEntries
