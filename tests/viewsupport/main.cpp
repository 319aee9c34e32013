// The view support classes need a QApplication (screens, style hints, event
// types); the tests run it on the offscreen platform.

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
