// The process in the locale of a German user for the life of a test: numbers have a decimal comma,
// the system's messages are German. The locale is made by the system's own tool, since few machines
// have it installed. Programs that the test starts are in it too.
#pragma once

#include <string>
#include <utility>
#include <vector>

class GermanLocale {
  public:
    GermanLocale();
    ~GermanLocale();
    GermanLocale(const GermanLocale&) = delete;
    GermanLocale& operator=(const GermanLocale&) = delete;

  private:
    void Set(const char* variable, const std::string& value);

    std::string previous_;
    std::vector<std::pair<std::string, std::string>> variables_; // as they were
};
