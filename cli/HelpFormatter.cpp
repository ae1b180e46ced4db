#include "cli/HelpFormatter.h"

#include <sstream>

namespace {

constexpr size_t kLineWidth = 79; // a full line would make some terminals begin another
constexpr size_t kIndent = 2;
constexpr size_t kOptionWidth = 26; // with the indent
constexpr size_t kCommandWidth = 16;

// One paragraph in lines that begin after `indent` blanks; the first line is `column` columns long
// already.
std::string WrapLine(const std::string& paragraph, size_t indent, size_t column) {
    std::istringstream words(paragraph);
    std::string wrapped;
    for (std::string word; words >> word; column += word.size()) {
        if (column > indent && column + 1 + word.size() > kLineWidth) {
            wrapped += "\n" + std::string(indent, ' ');
            column = indent;
        } else if (column > indent) {
            wrapped += ' ';
            ++column;
        }
        wrapped += word;
    }
    return wrapped + "\n";
}

std::string WrapText(const std::string& text) {
    std::istringstream lines(text);
    std::string wrapped;
    for (std::string line; std::getline(lines, line);)
        wrapped += WrapLine(line, 0, 0);
    return wrapped;
}

// A name that leaves no room puts its description on a line of its own.
std::string FormatRow(const std::string& name, const std::string& description, size_t nameWidth) {
    std::string row = std::string(kIndent, ' ') + name;
    if (row.size() + 1 < nameWidth)
        row.resize(nameWidth, ' ');
    else
        row += "\n" + std::string(nameWidth, ' ');
    return row + WrapLine(description, nameWidth, nameWidth);
}

} // namespace

OmHelpFormatter::OmHelpFormatter() {
    label("Positionals", "Files");
    label("SUBCOMMAND", "COMMAND");
}

std::string OmHelpFormatter::make_description(const CLI::App* app) const {
    return WrapText(app->get_description()) + "\n";
}

std::string OmHelpFormatter::make_footer(const CLI::App* app) const {
    return WrapText(app->get_footer());
}

std::string OmHelpFormatter::make_subcommand(const CLI::App* sub) const {
    return FormatRow(sub->get_name(), sub->get_description(), kCommandWidth);
}

// Which files must be given is told by the line of usage.
std::string OmHelpFormatter::make_option(const CLI::Option* option, bool isPositional) const {
    const std::string& type = option->get_type_name();
    const bool hasValue = !isPositional && option->get_type_size() != 0 && !type.empty();
    return FormatRow(make_option_name(option, isPositional) + (hasValue ? " " + type : ""),
                     make_option_desc(option), kOptionWidth);
}
