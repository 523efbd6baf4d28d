// The test program of the code of the command line.
#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv); // Qt finds its picture formats through it
    return RUN_ALL_TESTS();
}
