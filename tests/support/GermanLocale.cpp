#include "tests/support/GermanLocale.h"

#include "tests/support/TemporaryFolder.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

constexpr char kName[] = "de_DE.UTF-8";

// Once in a process: it takes a second.
const TemporaryFolder& GetLocales() {
    static const TemporaryFolder folder;
    static const int failed =
        std::system(("localedef -i de_DE -f UTF-8 '" + folder.Path(kName) + "'").c_str());
    EXPECT_EQ(failed, 0) << "localedef has not made the locale";
    return folder;
}

} // namespace

GermanLocale::GermanLocale() : previous_(std::setlocale(LC_ALL, nullptr)) {
    Set("LOCPATH", GetLocales().path.string());
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
