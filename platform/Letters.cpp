#include "platform/Letters.h"

#include <algorithm>

namespace {

char ToUpper(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                                : character;
}

} // namespace

std::string UpperCased(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), ToUpper);
    return result;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, ToUpper, ToUpper);
}
