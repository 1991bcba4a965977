#include "support/judge_values.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <sstream>

namespace {

std::map<std::string, std::vector<double>> ReadValues() {
    std::ifstream stream(TESSEL_TEST_DATA "/judge_values.txt");
    std::map<std::string, std::vector<double>> values;
    for (std::string line; std::getline(stream, line);) {
        if (line[0] == '#') continue;
        std::istringstream words(line);
        std::string name;
        words >> name;
        for (double x; words >> x;) values[name].push_back(x);
    }
    return values;
}

const std::map<std::string, std::vector<double>>& Values() {
    static const auto values = ReadValues();
    return values;
}

}  // namespace

bool HasJudged(const std::string& name) {
    return Values().count(name) > 0;
}

std::vector<double> Judged(const std::string& name) {
    EXPECT_TRUE(HasJudged(name)) << name;
    return HasJudged(name) ? Values().at(name) : std::vector<double>();
}

void ExpectAsJudged(const std::string& name, double value, double tolerance) {
    ExpectAsJudged(name, std::vector<double>{value}, tolerance);
}

void ExpectAsJudged(const std::string& name, const std::vector<double>& values, double tolerance) {
    const std::vector<double> judged = Judged(name);
    ASSERT_EQ(values.size(), judged.size()) << name;
    double largest = 0.0;
    for (double x : judged) largest = std::max(largest, std::fabs(x));
    for (std::size_t i = 0; i < judged.size(); i++)
        EXPECT_NEAR(values[i], judged[i], tolerance * largest) << name << " " << i;
}
