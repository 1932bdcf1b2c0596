#pragma once

#include <QLocale>
#include <QString>

#include <cstdint>
#include <string>

/// Byte counts as people read them, in the panel's locale. Any thread.
namespace corvane::ByteText {

/// File amounts count in powers of 1000 (a 500 GB disk), memory in powers of 1024 (16 GB of
/// memory), each with the units people know ("kB", "MB", "GB").
enum class Style { file, memory };

/// `bytes` in `style`: whole bytes and kilobytes, one fractional digit for megabytes, two above,
/// trailing zeros dropped ("0 bytes", "1.5 MB", "16 GB"). Counts above the signed 64-bit range
/// are clamped first, never wrapped.
QString format(std::uint64_t bytes, Style style, const QLocale& locale);
/// A rate: the file-style count followed by "/s" with no space ("1.5 MB/s").
QString rate(std::uint64_t bytesPerSecond, const QLocale& locale);

/// The locale of a BCP 47 tag ("de-DE"); English for one Qt does not know.
QLocale localeFor(const std::string& bcp47);

}  // namespace corvane::ByteText
