// SPDX-License-Identifier: MIT
#include "dbcheck/extension_table.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;

TEST(ExtensionTable, ARowHoldsTheExtensionsOfOneKind) {
    TempFolder folder;
    folder.write("Database/jpg.dat", "1,FFD8FF,H\r\n");
    folder.write("Database/jpeg.dat", "1,FFD8FF,H\r\n1,FFD9FF,H\r\n");
    folder.write("Database/gif.dat", "1,GIF89a,T\r\n1,GIF87a,T\r\n");
    folder.write("Database/own.dat", "1,OWN,T\r\n");
    folder.write("extensions.tsv", "extension\tkind\njpg\tJPEG picture\njpeg\tJPEG picture\ngif\tGIF picture\n");
    const auto database = readHeaderDatabase(folder.path());
    ASSERT_TRUE(database);
    EXPECT_EQ(extensionTable(*database),
              "| Kind | Extensions | Terms |\n"
              "| --- | --- | --- |\n"
              "| GIF picture | `gif` | 2 |\n"
              "| JPEG picture | `jpeg` `jpg` | 1 to 2 |\n"
              "| not named | `own` | 1 |\n"
              "\n3 kinds, 4 extensions, 6 terms.\n");
}

}  // namespace
}  // namespace quillon
