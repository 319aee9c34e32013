#include "handlers/file_dialog_handler.h"

#include <gtest/gtest.h>

TEST(FileDialogHandler, EngineFiltersBecomeOneQtFilterEndingWithAllFiles)
{
    EXPECT_EQ(FileDialogHandler::convertFilters({}), "All Files (*.*)");
    EXPECT_EQ(FileDialogHandler::convertFilters({"All Files|*", "", "All Files (*)"}), "All Files (*.*)");
    EXPECT_EQ(FileDialogHandler::convertFilters({"Text files|.txt"}), "Text files (*.txt);;All Files (*.*)");
    // A dot in the description turns too, and a bare extension or type is repeated behind a star.
    EXPECT_EQ(FileDialogHandler::convertFilters({"v1.2 Images|.png;.jpg"}),
              "v1*.2 Images (*.png *.jpg);;All Files (*.*)");
    EXPECT_EQ(FileDialogHandler::convertFilters({".png", "image/*", "a;b"}),
              ".png*.png;;image/**image/*;;a;b*a;b;;All Files (*.*)");
}
