// Nothing by itself: it carries the headers that the build reads once for all tests (tests/CMakeLists.txt).
