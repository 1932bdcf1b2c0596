#include <gtest/gtest.h>

#include <QApplication>

#include <cstdlib>

int main(int argc, char** argv) {
    // Windows are shown without a display; placement uses the offscreen screen.
    if (std::getenv("QT_QPA_PLATFORM") == nullptr) {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    }
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
