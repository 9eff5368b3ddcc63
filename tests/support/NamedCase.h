#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

/// Names a case of a parametrised test after its row's `what`.
template <class Row>
std::string caseName(const testing::TestParamInfo<Row>& info) {
    std::string name = info.param.what;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return (c < 'a' || c > 'z') && (c < 'A' || c > 'Z'); }, '_');
    return name;
}
