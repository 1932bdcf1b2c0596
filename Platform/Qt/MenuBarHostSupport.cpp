#include "Platform/Qt/MenuBarHostSupport.h"

#include <cstring>

namespace corvane {

QImage qImageFromItemImage(const ItemImage& image) {
    if (image.pixelWidth <= 0 || image.pixelHeight <= 0 ||
        image.pixels.size() != static_cast<std::size_t>(image.pixelWidth) *
                                   static_cast<std::size_t>(image.pixelHeight)) {
        return {};
    }
    QImage result(image.pixelWidth, image.pixelHeight, QImage::Format_ARGB32_Premultiplied);
    for (int row = 0; row < image.pixelHeight; ++row) {
        std::memcpy(result.scanLine(row),
                    image.pixels.data() + static_cast<std::size_t>(row) * image.pixelWidth,
                    static_cast<std::size_t>(image.pixelWidth) * sizeof(std::uint32_t));
    }
    result.setDevicePixelRatio(image.devicePixelRatio > 0 ? image.devicePixelRatio : 1);
    return result;
}

}  // namespace corvane
