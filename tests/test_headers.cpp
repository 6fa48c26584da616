// What all test programs include, precompiled (see CMakeLists.txt).
