#include <gtest/gtest.h>
#include <tivlib/tivlib.h>
TEST(Smoke, Links) { SUCCEED(); }
