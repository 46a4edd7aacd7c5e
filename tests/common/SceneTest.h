#pragma once

#include "scene/SceneApplication.h"

#include <QtTest>

/** main() of a test that shows the scene in a window. */
#define KX_SCENE_TEST_MAIN(TestClass)                                                                                  \
    int main(int argc, char** argv)                                                                                    \
    {                                                                                                                  \
        Torvik::View3d::SceneApplication app(argc, argv);                                                              \
        TestClass test;                                                                                                \
        QTEST_SET_MAIN_SOURCE_PATH                                                                                     \
        return QTest::qExec(&test, argc, argv);                                                                        \
    }
