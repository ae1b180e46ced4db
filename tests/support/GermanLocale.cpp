#include "tests/support/GermanLocale.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

constexpr char kName[] = "de_DE.UTF-8";

} // namespace

GermanLocale::GermanLocale() : previous_(std::setlocale(LC_ALL, nullptr)) {
    const std::string make = "localedef -i de_DE -f UTF-8 '" + folder_.Path(kName) + "'";
    EXPECT_EQ(std::system(make.c_str()), 0) << make;
    Set("LOCPATH", folder_.path.string());
    Set("LC_ALL", kName);
    Set("LANGUAGE", "de");
    EXPECT_NE(std::setlocale(LC_ALL, ""), nullptr);
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
}

GermanLocale::~GermanLocale() {
    for (const auto& [variable, value] : variables_)
        setenv(variable.c_str(), value.c_str(), 1);
    std::setlocale(LC_ALL, previous_.c_str());
}

// An empty variable counts as none.
void GermanLocale::Set(const char* variable, const std::string& value) {
    const char* before = std::getenv(variable);
    variables_.emplace_back(variable, before ? before : "");
    setenv(variable, value.c_str(), 1);
}
