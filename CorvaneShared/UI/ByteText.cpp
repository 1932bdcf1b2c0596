#include "CorvaneShared/UI/ByteText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace corvane::ByteText {

namespace {

constexpr std::uint64_t largestSigned = std::numeric_limits<std::int64_t>::max();

// Fewer digits for small units: "12 kB" says enough, "1.25 GB" needs its hundredths.
int fractionDigits(std::uint64_t bytes, double base) {
    const double value = static_cast<double>(bytes);
    if (value < base * base) {
        return 0;
    }
    const bool megabytes = value < base * base * base;
    int digits = megabytes ? 1 : 2;
    const double unit = std::pow(base, std::floor(std::log(value) / std::log(base)));
    // Trailing zeros add nothing: 16 GB of memory reads "16 GB", not "16.00 GB".
    double scaled = std::round(value / unit * std::pow(10.0, digits));
    while (digits > 0 && std::fmod(scaled, 10.0) == 0) {
        scaled /= 10;
        --digits;
    }
    return digits;
}

}  // namespace

QString format(std::uint64_t bytes, Style style, const QLocale& locale) {
    const std::uint64_t clamped = std::min(bytes, largestSigned);
    const bool file = style == Style::file;
    const QLocale::DataSizeFormats units =
        file ? QLocale::DataSizeSIFormat : QLocale::DataSizeTraditionalFormat;
    return locale.formattedDataSize(static_cast<qint64>(clamped),
                                    fractionDigits(clamped, file ? 1000.0 : 1024.0), units);
}

QString rate(std::uint64_t bytesPerSecond, const QLocale& locale) {
    return format(bytesPerSecond, Style::file, locale) + QStringLiteral("/s");
}

QLocale localeFor(const std::string& bcp47) {
    QLocale locale(QString::fromStdString(bcp47));
    return locale.language() == QLocale::C ? QLocale(QLocale::English) : locale;
}

}  // namespace corvane::ByteText
