// Runs the tests of some areas; an area is a source file NAME_test.cpp.
//   PROGRAM [AREA...] [GoogleTest's options]      all areas, when none is named
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

// NAME of a path that ends with NAME_test.cpp.
std::string areaOf(const testing::TestInfo& test) {
    const std::string path = test.file();
    const std::size_t name = path.find_last_of("/\\") + 1;
    return path.substr(name, path.rfind("_test.cpp") - name);
}

// The filter that lets through the tests of the area; empty when there are none.
std::string filterFor(const std::string& area) {
    const testing::UnitTest& all = *testing::UnitTest::GetInstance();
    std::string filter;
    for (int i = 0; i < all.total_test_suite_count(); ++i) {
        const testing::TestSuite& suite = *all.GetTestSuite(i);
        for (int j = 0; j < suite.total_test_count(); ++j)
            if (const testing::TestInfo& test = *suite.GetTestInfo(j); areaOf(test) == area)
                filter += std::string(":") + suite.name() + '.' + test.name();
    }
    return filter;
}

} // namespace

int main(int count, char** words) {
    testing::InitGoogleTest(&count, words);
    std::string filter;
    for (int i = 1; i < count; ++i) {
        const std::string tests = filterFor(words[i]);
        if (tests.empty()) {
            std::fprintf(stderr, "There are no tests of \"%s\".\n", words[i]);
            return 2;
        }
        filter += tests;
    }
    if (!filter.empty())
        testing::GTEST_FLAG(filter) = filter;
    return RUN_ALL_TESTS();
}
