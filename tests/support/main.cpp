// Test program entry: GoogleTest with the process pinned to what the suite assumes (offscreen
// Qt platform, a fixed UTC time zone). Each suite pins its own locale and clock where it
// depends on them.
#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    ::setenv("TZ", "UTC", 1);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
