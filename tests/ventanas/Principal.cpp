// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication programa(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    return RUN_ALL_TESTS();
}
